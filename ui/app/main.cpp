// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// The program: veltro [ADDRESS…]. Each address is saved as if it were dropped on the window; when
// a window is open already, it is the one that takes them.
#include "engine/runtime/environment.h"
#include "platform/program_identity.h"
#include "platform/single_instance.h"
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
    SingleInstance instance;
    if (instance.start(QGuiApplication::arguments().mid(1)) ==
        SingleInstance::Outcome::handedOver) {
        return 0;
    }
    if (!program.start()) {
        return 1;
    }
    MacAppStore &store = program.store();
    QObject::connect(&instance, &SingleInstance::activated, &program, &Program::activate);
    QObject::connect(&instance, &SingleInstance::linkOpened, &store, &MacAppStore::handleOpenURL);
    QObject::connect(&instance, &SingleInstance::itemOpened, &program, &Program::showItem);
    QObject::connect(&instance, &SingleInstance::searchRequested, &program,
                     &Program::searchLibrary);
    instance.setReady();
    return QGuiApplication::exec();
}
