// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The helper that the desktop's search starts over the session bus. It answers from the index of
// the library, with the program running or not, and ends when it has not been asked for a while.
#include "platform/program_identity.h"
#include "platform/search_index.h"
#include "platform/search_provider/krunner_search.h"
#include "platform/search_provider/shell_search.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QTimer>

#include <chrono>

int main(int argc, char **argv)
{
    using namespace veltro;
    const QCoreApplication application(argc, argv);
    const SearchIndex &index = SearchIndex::standard();

    QTimer idle;
    idle.setSingleShot(true);
    idle.setInterval(std::chrono::minutes(2));
    QObject::connect(&idle, &QTimer::timeout, &application, &QCoreApplication::quit);
    idle.start();

    ShellSearch shell(index);
    KRunnerSearch runner(index);
    QObject::connect(&shell, &ShellSearch::used, &idle, qOverload<>(&QTimer::start));
    QObject::connect(&runner, &KRunnerSearch::used, &idle, qOverload<>(&QTimer::start));

    QDBusConnection bus = QDBusConnection::sessionBus();
    const bool isServed =
        bus.registerObject(programObjectPath() + QStringLiteral("/SearchProvider"), &shell,
                           QDBusConnection::ExportAllSlots) &&
        bus.registerObject(QStringLiteral("/krunner"), &runner, QDBusConnection::ExportAllSlots) &&
        bus.registerService(programIdentifier() + QStringLiteral(".SearchProvider"));
    return isServed ? QCoreApplication::exec() : 1;
}
