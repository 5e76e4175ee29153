// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// The baseline of the window's benchmarks: veltro-bench-bare [INTERPRETER-LIBRARY]. With the
// library, yt_dlp is imported in the background when the first frame is on the screen, and a green
// square is shown after that; with an empty name nothing is imported before it.
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>

#include <dlfcn.h>
#include <string>
#include <thread>

namespace {

// In the process, as the program has it; false when it cannot be imported.
bool importYtDlp(const std::string &library)
{
    if (library.empty()) {
        return true;
    }
    void *const interpreter = dlopen(library.c_str(), RTLD_NOW | RTLD_GLOBAL);
    if (interpreter == nullptr) {
        return false;
    }
    const auto initialize = reinterpret_cast<void (*)(int)>(dlsym(interpreter, "Py_InitializeEx"));
    const auto run = reinterpret_cast<int (*)(const char *, void *)>(
        dlsym(interpreter, "PyRun_SimpleStringFlags"));
    const auto leave = reinterpret_cast<void *(*)()>(dlsym(interpreter, "PyEval_SaveThread"));
    if (initialize == nullptr || run == nullptr || leave == nullptr) {
        return false;
    }
    initialize(0);
    const bool isImported = run("import yt_dlp", nullptr) == 0;
    leave();
    return isImported;
}

}

int main(int argc, char *argv[])
{
    const QGuiApplication application(argc, argv);
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);
    QQmlApplicationEngine engine;
    engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Veltro/Bench/BareWindow.qml")));
    auto *const window = qobject_cast<QQuickWindow *>(engine.rootObjects().value(0));
    if (window == nullptr) {
        return 1;
    }
    std::jthread background;
    if (argc > 1) {
        const auto begin = [&background, window, library = std::string(argv[1])] {
            background = std::jthread([window, library] {
                const bool isImported = importYtDlp(library);
                QMetaObject::invokeMethod(
                    window, [window, isImported] { window->setProperty("ready", isImported); },
                    Qt::QueuedConnection);
            });
        };
        QObject::connect(window, &QQuickWindow::frameSwapped, window, begin,
                         Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
    }
    return QGuiApplication::exec();
}
