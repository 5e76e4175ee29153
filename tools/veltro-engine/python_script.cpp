// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/veltro-engine/python_script.h"

#include "engine/bridge/python.h"
#include "engine/runtime/python_executor.h"

#include <QCoro/QCoroFuture>
#include <QFuture>
#include <QPromise>

#include <cstdio>
#include <memory>
#include <vector>

namespace veltro {
namespace {

/// What the interpreter's own launcher makes of an exit: none is 0, a number is itself.
int exitCodeOf(const PythonObject &exit)
{
    const std::optional<PythonObject> code = exit.checking().attr("code");
    if (!code || code->description() == "None") {
        return 0;
    }
    return static_cast<int>(code->to<std::int64_t>().value_or(1));
}

int handleException(const PythonError &error)
{
    if (error.kind() == PythonError::Kind::exception) {
        const PythonObject systemExit = Python().attr("SystemExit");
        if (Python().attr("isinstance")(error.value(), systemExit).to<bool>().value_or(false)) {
            return exitCodeOf(error.value());
        }
    }
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}

int runScript(const QStringList &arguments)
{
    try {
        std::vector<PythonObject> texts;
        for (const QString &argument : arguments) {
            texts.emplace_back(argument.toStdString());
        }
        Python().attemptImport("sys").throwing().setAttr("argv", texts);
        const PythonObject runPath = Python().attemptImport("runpy").throwing().attr("run_path");
        runPath.throwing().call({texts.front()}, {{"run_name", "__main__"}});
        return 0;
    } catch (const PythonError &error) {
        return handleException(error);
    }
}

}

QCoro::Task<int> runPythonScript(QStringList arguments)
{
    auto promise = std::make_shared<QPromise<int>>();
    QFuture<int> code = promise->future();
    PythonExecutor::primary().submit([promise, arguments] {
        promise->start();
        promise->addResult(runScript(arguments));
        promise->finish();
    });
    co_return co_await code;
}

}
