// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// A start of the program, without its window: says on standard output which start it is and what
// arrives. The arguments are links; a line on standard input makes the window ready.
#include "platform/single_instance.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <cstdio>
#include <unistd.h>

namespace {

void say(const QString &line)
{
    std::printf("%s\n", qPrintable(line));
    std::fflush(stdout);
}

}

int main(int argc, char **argv)
{
    using namespace veltro;
    const QCoreApplication application(argc, argv);
    SingleInstance instance;
    QObject::connect(&instance, &SingleInstance::activated, &instance,
                     [](const QString &token) { say(QStringLiteral("activated ") + token); });
    QObject::connect(&instance, &SingleInstance::linkOpened, &instance, [](const QUrl &link) {
        say(QStringLiteral("link ") + link.toString(QUrl::FullyEncoded));
    });
    QObject::connect(&instance, &SingleInstance::itemOpened, &instance, [](const QUuid &item) {
        say(QStringLiteral("item ") + item.toString(QUuid::WithoutBraces));
    });
    QObject::connect(&instance, &SingleInstance::searchRequested, &instance,
                     [](const QString &text) { say(QStringLiteral("search ") + text); });
    if (instance.start(application.arguments().mid(1)) == SingleInstance::Outcome::handedOver) {
        say(QStringLiteral("handed over"));
        return 0;
    }
    say(QStringLiteral("first"));
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &instance, [&] {
        char line[64];
        if (::read(STDIN_FILENO, line, sizeof line) <= 0) {
            QCoreApplication::quit();
        } else {
            instance.setReady();
        }
    });
    return QCoreApplication::exec();
}
