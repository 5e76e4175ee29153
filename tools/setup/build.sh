# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Shared by run, test, bench and .ci/run: sourced, never run. The work folder is the repository's
# root after this.

cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/../.."

# Builds a preset with what output there is; all of it, or the targets named.
build_preset() { # <preset> [<target>...]
    local preset=$1 targets=()
    shift
    [ $# -eq 0 ] || targets=(--target "$@")
    [ -f "build/$preset/build.ninja" ] || cmake --preset "$preset" || return
    nice cmake --build --preset "$preset" --parallel "$(nproc)" "${targets[@]}"
}

# The same, silent unless it fails.
build_quietly() { # <preset> [<target>...]
    local log=build/$1.log
    mkdir -p build
    [ -f "build/$1/build.ninja" ] ||
        printf 'Building; the first time takes a minute or two.\n' >&2
    if ! build_preset "$@" >"$log" 2>&1; then
        tail -n 40 -- "$log" >&2
        printf 'The build failed; all of its output is in %s.\n' "$log" >&2
        return 1
    fi
}
