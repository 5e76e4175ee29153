// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "library/library_row.h"

#include <optional>

namespace veltro {

/// One step from one list of rows to another, as a view has to hear of it.
struct RowChange {
    enum class Kind {
        insert,
        remove,
        replace, ///< other values under the same ids
    };

    Kind kind = Kind::insert;
    std::size_t first = 0; ///< in the list as the steps before have left it
    std::size_t count = 0;
    LibraryRows rows; ///< the new ones; empty for a removal
};

/// The steps from one list to another, both in the order of the rows; nothing when there would be
/// more than the most that pay. Pure.
[[nodiscard]] std::optional<std::vector<RowChange>>
rowChanges(const LibraryRows &from, const LibraryRows &to, std::size_t most);

/// Does the step to a list.
void applyChange(const RowChange &change, LibraryRows &rows);

}
