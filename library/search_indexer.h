// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/search_index.h"

#include <memory>
#include <stop_token>
#include <thread>

namespace veltro {

class ModelContainer;
struct DownloadItem;

/// What the desktop's search shows of a library entry.
[[nodiscard]] SearchableItem searchableItem(const DownloadItem &item);

/// Hands the entry to the desktop's search and returns at once. Entries are only added: one that
/// is deleted from the library is found on. Any thread.
void indexForSearch(const DownloadItem &item);

/// Hands on what the library has and the desktop's search lacks: entries whose process ended
/// between the two, or all where the index was lost. Only looks where nothing is missing. Blocks;
/// stops early when that is asked for, and goes on the next time.
/// @param rest how long to pause after a piece of work, as a multiple of the time that it took
void indexWhatIsMissing(ModelContainer &library, SearchIndex &index,
                        const std::stop_token &stop = {}, int rest = 0);

/// The same for the user's index, at leisure and on a thread of its own that gives way to others.
/// @returns the thread, which stops early at its end
[[nodiscard]] std::jthread indexWhatIsMissingInBackground(std::shared_ptr<ModelContainer> library);

}
