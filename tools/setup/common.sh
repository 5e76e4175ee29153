# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Shared by the set-up steps: sourced, never run. Bash and Debian's essential packages are all
# that may be used here; a fresh machine has nothing else yet.

setup_dir=$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")
root=$(readlink -f -- "$setup_dir/../..")
vendor_dir=${VELTRO_VENDOR_DIR:-$root/build/vendor}
downloads_dir=${VELTRO_DOWNLOADS_DIR:-$root/build/downloads}
# The distribution's interpreter, whose library the program loads; never one that PATH has.
python=/usr/bin/python3

say() { printf 'setup: %s\n' "$*" >&2; }
fail() { say "$*"; exit 1; }

# Runs a command as root: directly, or through sudo where there is one.
as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        fail "needs root for: $*"
    fi
}

# A folder that an interrupted or damaged step cannot spoil is described by its manifest.txt:
# lines of facts ("certificates <hash>") about what it was made from, then one line
# "file <bytes> <path>" for each file in it.
write_manifest() { # <folder> <facts>
    { printf '%s\n' "$2"; list_files "$1"; } >"$1/manifest.tmp"
    mv -- "$1/manifest.tmp" "$1/manifest.txt"
}

list_files() { # <folder>
    find "$1" -type f ! -name 'manifest.*' -printf 'file %s %P\n' | LC_ALL=C sort
}

# True when every file of the manifest is there with its size. Files that came later (a cache
# that the program keeps there) do no harm.
files_are_whole() { # <folder>
    [ -f "$1/manifest.txt" ] || return 1
    local lost
    lost=$(LC_ALL=C comm -23 <(grep '^file ' "$1/manifest.txt") <(list_files "$1"))
    [ -z "$lost" ]
}

facts_of() { # <folder>
    grep -v '^file ' "$1/manifest.txt" 2>/dev/null || true
}

# Puts a finished folder in the place of an older one. The older one goes only when the new one
# stands; recover_folder puts it back after a stop in between.
replace_folder() { # <new> <place>
    rm -rf -- "$2.old"
    [ ! -e "$2" ] || mv -- "$2" "$2.old"
    mv -- "$1" "$2"
    rm -rf -- "$2.old"
}

recover_folder() { # <place>
    if [ -e "$1.old" ] && [ ! -e "$1" ]; then
        mv -- "$1.old" "$1"
    fi
}
