// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/library_removal.h"

#include "library/model_context.h"
#include "platform/log.h"
#include "platform/serial_queue.h"

#include <QFile>

#include <utility>

namespace veltro {
namespace {

// What it holds when the process ends is still done.
SerialQueue &removalQueue()
{
    static SerialQueue queue("com.veltro.library.removal");
    return queue;
}

void removeFile(const QString &path)
{
    QFile file(path);
    if (!file.remove()) {
        const QString line =
            QStringLiteral("library: %1 was not removed: %2").arg(path, file.errorString());
        logLine(LogTag::engine, line.toStdString());
    }
}

}

void removeFromLibrary(std::shared_ptr<ModelContainer> container,
                       std::vector<LibraryRemoval> removals)
{
    removalQueue().async([container = std::move(container), removals = std::move(removals)] {
        ModelContext context(container);
        for (const LibraryRemoval &removal : removals) {
            if (!removal.file.isEmpty()) {
                removeFile(removal.file);
            }
            context.removeItem(removal.id);
        }
        context.save();
    });
}

}
