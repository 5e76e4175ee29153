// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "engine/bridge/python.h"
#include "engine/runtime/python_executor.h"

namespace veltro {

/// While it lives, the interpreter finds a support module whose set-up fails: "names have moved".
class BrokenEngine {
public:
    BrokenEngine()
    {
        PythonExecutor::primary().queue().sync([] {
            PythonExecutor::prepareEnvironment();
            PythonExecutor::releaseStartupThreadState();
        });
        run("import sys, types\n"
            "def apply_after_import():\n"
            "    raise RuntimeError('names have moved')\n"
            "sys.modules['python_init'] = types.SimpleNamespace(\n"
            "    apply_after_import=apply_after_import)\n");
    }
    ~BrokenEngine() { run("import sys; del sys.modules['python_init']"); }
    BrokenEngine(const BrokenEngine &) = delete;
    BrokenEngine &operator=(const BrokenEngine &) = delete;

private:
    static void run(const char *source)
    {
        PythonExecutor::primary().queue().sync([source] {
            PythonExecutor::runThrowing([source] {
                const PythonObject scope = Python().attr("dict")();
                Python().attr("exec").throwing().call({source, scope});
            });
        });
    }
};

}
