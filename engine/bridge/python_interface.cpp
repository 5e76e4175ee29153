// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/bridge/python_interface.h"

#include "engine/bridge/interpreter_environment.h"
#include "engine/bridge/python_calls.h"
#include "engine/bridge/python_conversions.h"
#include "engine/bridge/python_library.h"
#include "engine/bridge/python_lock.h"
#include "engine/bridge/python_symbols.h"
#include "engine/bridge/python_views.h"
#include "engine/bridge/stop_process.h"

#include <array>
#include <csignal>
#include <optional>
#include <string>

namespace veltro {
namespace {

constexpr const char *startupScript = R"(
import sys
import os

# Some modules expect that there is at least one argument.
sys.argv = [""]

# There the interpreter takes the executable of this process for its own.
if sys.version_info.major == 3 and sys.platform == "darwin":
    sys.executable = os.path.join(
        sys.exec_prefix, "bin",
        "python{}.{}".format(sys.version_info.major, sys.version_info.minor))
)";

/// Puts back, at its end, what the signals of the process led to at its beginning: the start of
/// the interpreter takes SIGINT for itself and ignores SIGPIPE.
class SignalDispositions {
public:
    SignalDispositions()
    {
        for (std::size_t i = 0; i < signals.size(); ++i) {
            sigaction(signals[i], nullptr, &m_kept[i]);
        }
    }
    ~SignalDispositions()
    {
        for (std::size_t i = 0; i < signals.size(); ++i) {
            sigaction(signals[i], &m_kept[i], nullptr);
        }
    }
    SignalDispositions(const SignalDispositions &) = delete;
    SignalDispositions &operator=(const SignalDispositions &) = delete;

private:
    static constexpr std::array signals{SIGINT, SIGPIPE};
    std::array<struct sigaction, signals.size()> m_kept{};
};

void nameProgram()
{
    void *setName = capi::Py_SetProgramName.find();
    const std::optional<std::wstring> program = programOfLibrary();
    // A library of before version 3 takes bytes there.
    if (setName && program && !PythonLibrary::isLegacy()) {
        static const std::wstring kept = *program; // the interpreter keeps the pointer
        reinterpret_cast<void (*)(const wchar_t *)>(setName)(kept.c_str());
    }
}

void start()
{
    checkInterpreterEnvironment();
    // In a C locale file names would otherwise be ASCII, and writing a title would fail.
    if (void *mode = capi::Py_UTF8Mode.find()) {
        *static_cast<int *>(mode) = 1;
    }
    nameProgram();
    const SignalDispositions kept;
    capi::Py_Initialize();
}

PythonObject startedBuiltins()
{
    if (!python_lock::interpreterRuns()) {
        start();
    }
    PythonObject builtins = PythonObject::borrow(capi::PyEval_GetBuiltins());
    capi::PyRun_SimpleString(startupScript);
    return builtins;
}

}

PythonInterface::PythonInterface() : m_builtins(startedBuiltins()) {}

PythonObject PythonInterface::attr(const std::string &name) const
{
    try {
        return m_builtins.throwing()[name];
    } catch (const PythonError &error) {
        calls::stopFor("Could not access PythonObject member '" + name + "'", error);
    }
}

PythonObject PythonInterface::import(const std::string &name) const
{
    try {
        return attemptImport(name);
    } catch (const PythonError &error) {
        stopProcess(error.description());
    }
}

PythonObject PythonInterface::attemptImport(const std::string &name) const
{
    PyObjectStruct *module = capi::PyImport_ImportModule(name.c_str());
    if (!module) {
        const auto error = calls::takeError();
        throw error ? *error : PythonError::invalidModule(name);
    }
    return PythonObject::steal(module);
}

std::string PythonInterface::version() const
{
    return import("sys").attr("version").description();
}

PythonInterface &Python()
{
    static auto &interface = *new PythonInterface;
    return interface;
}

}

#if defined(__SANITIZE_ADDRESS__)
/// The interpreter is never finalised and keeps its objects, our closures among them, in memory
/// that the leak checker does not look at; a process that started it is not checked at its end.
extern "C" int __lsan_is_turned_off()
{
    return veltro::python_lock::interpreterRuns() ? 1 : 0;
}
#endif
