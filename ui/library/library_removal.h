// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QString>
#include <QUuid>

#include <memory>
#include <vector>

namespace veltro {

class ModelContainer;

/// An item that is to go, with its file when it has one.
struct LibraryRemoval {
    QUuid id;
    QString file; ///< empty for none
};

/// Removes each item's file and then its record, in order, on a thread of its own, since a disk may
/// be slow. A file that cannot be removed is in the log and keeps no record; thumbnails stay. Live
/// queries show the outcome. Main thread; returns at once.
void removeFromLibrary(std::shared_ptr<ModelContainer> container,
                       std::vector<LibraryRemoval> removals);

}
