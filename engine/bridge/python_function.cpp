// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/bridge/python_function.h"

#include "engine/bridge/python_calls.h"
#include "engine/bridge/python_conversions.h"
#include "engine/bridge/python_interface.h"
#include "engine/bridge/python_symbols.h"
#include "engine/bridge/stop_process.h"

#include <cstdlib>
#include <cxxabi.h>
#include <string>
#include <typeinfo>

namespace veltro {
namespace {

constexpr const char *capsuleName = "veltro.closure";

using KeptFunction = std::shared_ptr<const PyFunction>;

/// The name of the type of the error that is being handled, without its namespaces.
std::string handledTypeName()
{
    const std::type_info *type = abi::__cxa_current_exception_type();
    if (!type) {
        return "unknown";
    }
    int status = 0;
    char *readable = abi::__cxa_demangle(type->name(), nullptr, nullptr, &status);
    std::string name = readable ? readable : type->name();
    std::free(readable);
    const auto scope = name.substr(0, name.find('<')).rfind("::");
    return scope == std::string::npos ? name : name.substr(scope + 2);
}

void raiseText(const std::string &description)
{
    const std::string text = handledTypeName() + " raised in Veltro: " + description;
    // Through an object, since the plain form would refuse bytes that are not UTF-8.
    capi::PyErr_SetObject(capi::PyExc_Exception.value(), PythonObject(text).pointer());
}

void raise(const PythonObject &thrown)
{
    if (capi::PyObject_IsInstance(thrown.pointer(), capi::PyExc_BaseException.value()) == 1) {
        const PythonObject type = calls::made(capi::PyObject_Type(thrown.pointer()));
        capi::PyErr_SetObject(type.pointer(), thrown.pointer());
    } else {
        calls::clearError();
        raiseText(thrown.description());
    }
}

/// Raises in the interpreter what is being handled. REQUIRES: inside a catch block.
void raiseHandled() noexcept
{
    try {
        throw;
    } catch (const PythonObject &object) {
        raise(object);
    } catch (const PythonError &error) {
        if (error.kind() == PythonError::Kind::exception) {
            raise(error.value());
        } else {
            raiseText(error.description());
        }
    } catch (const std::exception &error) {
        raiseText(error.what());
    } catch (...) {
        raiseText("no description");
    }
}

PythonKeywords keywordsOf(PyObjectStruct *named)
{
    if (!named) {
        return {};
    }
    PythonKeywords result;
    const auto entries = entriesOf(PythonObject::borrow(named)).value();
    for (const auto &[key, value] : entries) {
        result.emplace_back(key.description(), value);
    }
    return result;
}

PyObjectStruct *run(const PyFunction &function, PyObjectStruct *arguments, PyObjectStruct *named)
{
    const PythonObject result =
        function.closure(*elementsOf(PythonObject::borrow(arguments)), keywordsOf(named));
    capi::Py_IncRef(result.pointer());
    return result.pointer();
}

PyObjectStruct *runWithKeywords(PyObjectStruct *capsule, PyObjectStruct *arguments,
                                PyObjectStruct *named) noexcept
{
    void *kept = capi::PyCapsule_GetPointer(capsule, capsuleName);
    if (!kept) {
        return nullptr; // the error is pending
    }
    // A copy: the call may drop the last handle to its own callable.
    const KeptFunction function = *static_cast<KeptFunction *>(kept);
    try {
        return run(*function, arguments, named);
    } catch (...) {
        raiseHandled();
        return nullptr;
    }
}

PyObjectStruct *runPositional(PyObjectStruct *capsule, PyObjectStruct *arguments) noexcept
{
    return runWithKeywords(capsule, arguments, nullptr);
}

void dropFunction(PyObjectStruct *capsule) noexcept
{
    delete static_cast<KeptFunction *>(capi::PyCapsule_GetPointer(capsule, capsuleName));
}

/// The interpreter keeps the address, so both live as long as the process.
const capi::MethodRecord &methodRecord(PyFunction::CallingConvention convention)
{
    constexpr int positional = 0x1;
    constexpr int keywords = 0x2;
    static const capi::MethodRecord varArgs{
        "veltro_closure", reinterpret_cast<void *>(runPositional), positional, nullptr};
    static const capi::MethodRecord varArgsWithKeywords{"veltro_closure_with_keywords",
                                                        reinterpret_cast<void *>(runWithKeywords),
                                                        positional | keywords, nullptr};
    switch (convention) {
    case PyFunction::CallingConvention::varArgs:
        return varArgs;
    case PyFunction::CallingConvention::varArgsWithKeywords:
        return varArgsWithKeywords;
    }
    return varArgs;
}

void requireVersion()
{
    static const bool enough = [] {
        const PythonObject version = Python().import("sys").attr("version_info");
        const auto major = version[0].to<std::int64_t>().value_or(0);
        const auto minor = version[1].to<std::int64_t>().value_or(0);
        return std::pair(major, minor) >= std::pair<std::int64_t, std::int64_t>(3, 1);
    }();
    if (!enough) {
        stopProcess("PythonFunction only supports Python 3.1 and above.");
    }
}

PyObjectStruct *callable(const KeptFunction &function)
{
    requireVersion();
    const PythonObject capsule =
        calls::made(capi::PyCapsule_New(new KeptFunction(function), capsuleName, dropFunction));
    return capi::PyCFunction_NewEx(&methodRecord(function->callingConvention), capsule.pointer(),
                                   nullptr);
}

}

PythonObject::PythonObject(const PythonFunction &function)
    : PythonObject(calls::made(callable(function.function())))
{}

}
