// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace veltro {

class Database;

/// Makes a connection fit to write: the one version of the store's tables that there has been, in
/// a file that was empty; a write-ahead log; commits that are on the disk when they return.
/// @throws StoreError newer or foreign for a file that is not this version's, which stays as it is
void prepareStore(Database &database);

}
