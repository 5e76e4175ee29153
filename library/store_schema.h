// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace veltro {

class Database;

/// Keeps the search key ?3, of the folding ?2, of the item ?1; of one that is gone, none.
inline constexpr auto saveSearchKey =
    "INSERT OR REPLACE INTO RowSearchKey (number, item, folding, key) "
    "SELECT rowid, id, ?2, ?3 FROM DownloadItem WHERE id = ?1";
/// What joins the key k, of the folding ?1, to the item i.
inline constexpr auto searchKeyJoin =
    " LEFT JOIN RowSearchKey k ON k.number = i.rowid AND k.item = i.id AND k.folding = ?1 ";

/// Makes a connection fit to write: the one version of the store's tables that there has been, in
/// a file that was empty; a write-ahead log; commits that are on the disk when they return.
/// @throws StoreError newer or foreign for a file that is not this version's, which stays as it is
void prepareStore(Database &database);

}
