// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QString>

#include <chrono>
#include <optional>

namespace veltro {

enum class X11Selection {
    copied, ///< the clipboard
    marked, ///< what is marked in some program, and pasted by the middle button
};

/// Reads the text that another program holds in a selection of the X display of this process,
/// over a connection of its own, so that nobody else waits for that program. Nothing where the text
/// is longer than that, of which no more is ever kept, or where the program is too slow. Blocks;
/// any thread but the main one, which may itself be what is asked.
[[nodiscard]] std::optional<QString> readX11Clipboard(X11Selection selection, qsizetype mostBytes,
                                                      std::chrono::milliseconds within);

}
