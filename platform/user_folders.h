// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QString>

namespace veltro {

// Where the user's files are, as the desktop has it. Any thread.

/// The user's documents, wherever the desktop's user folders put them.
[[nodiscard]] QString documentsFolder();

/// What the program keeps for the user: the library, cookies. Made when it is not there.
[[nodiscard]] QString dataFolder();

/// The user's settings of this program. Made when it is not there.
[[nodiscard]] QString configurationFolder();

}
