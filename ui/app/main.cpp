// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// The program: veltro [ADDRESS…]. Each address is saved as if it were dropped on the window.
#include "engine/runtime/environment.h"
#include "platform/program_identity.h"
#include "ui/app/program.h"
#include "ui/design/appearance.h"

#include <QGuiApplication>

int main(int argc, char *argv[])
{
    using namespace veltro;
    setInterpreterEnvironment(); // before any thread that may read the environment
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("veltro"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Veltro"));
    QGuiApplication::setDesktopFileName(programIdentifier());
    applyAppearance();
    Program program;
    if (!program.start()) {
        return 1;
    }
    const QStringList addresses = QGuiApplication::arguments().mid(1);
    for (const QString &address : addresses) {
        program.open(address);
    }
    return QGuiApplication::exec();
}
