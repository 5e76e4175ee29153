// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/search_index.h"

namespace veltro {

struct DownloadItem;

/// What the desktop's search shows of a library entry.
[[nodiscard]] SearchableItem searchableItem(const DownloadItem &item);

/// Hands the entry to the desktop's search and returns at once. Entries are only added: one that
/// is deleted from the library is found on. Any thread.
void indexForSearch(const DownloadItem &item);

}
