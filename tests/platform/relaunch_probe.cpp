// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The program without its window, as far as it updates itself: takes the update that is offered to
// the bundle in its first argument, and starts anew. Its second argument is its defaults store.
#include "platform/updater.h"

#include <QCoreApplication>

int main(int argc, char **argv)
{
    using namespace veltro;
    using State = UpdateManager::State;
    qputenv("PYTHONHOME", "/of/the/old/interpreter");
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    UpdateManager updates(arguments.value(1).toStdString(), DefaultsStore(arguments.value(2)));
    QObject::connect(&updates, &UpdateManager::stateChanged, &updates, [&] {
        if (updates.state() == State::available) {
            updates.install();
        } else if (updates.state() == State::ready) {
            updates.relaunch();
        } else if (updates.state() == State::failed) {
            QCoreApplication::exit(1);
        }
    });
    updates.checkForUpdates();
    return QCoreApplication::exec();
}
