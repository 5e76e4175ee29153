// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/bridge/python_calls.h"

#include "engine/bridge/python_symbols.h"
#include "engine/bridge/stop_process.h"
#include "platform/log.h"

namespace veltro::calls {
namespace {

/// A new sequence; its setter takes over the reference that it is given.
template <typename Make, typename Set>
PyObjectStruct *sequence(const std::vector<PythonObject> &elements, Make &make, Set &set)
{
    PyObjectStruct *result = make(static_cast<capi::Size>(elements.size()));
    if (!result) {
        return nullptr;
    }
    for (std::size_t i = 0; i < elements.size(); ++i) {
        capi::Py_IncRef(elements[i].pointer());
        set(result, static_cast<capi::Size>(i), elements[i].pointer());
    }
    return result;
}

std::vector<std::pair<PythonObject, PythonObject>> keywordEntries(const PythonKeywords &named)
{
    return {named.begin(), named.end()};
}

}

PyObjectStruct *attribute(const PythonObject &object, const std::string &name)
{
    return capi::PyObject_GetAttrString(object.pointer(), name.c_str());
}

bool setAttribute(const PythonObject &object, const std::string &name, const PythonObject &value)
{
    return capi::PyObject_SetAttrString(object.pointer(), name.c_str(), value.pointer()) == 0;
}

PyObjectStruct *item(const PythonObject &object, const PythonObject &key)
{
    return capi::PyObject_GetItem(object.pointer(), key.pointer());
}

bool setItem(const PythonObject &object, const PythonObject &key, const PythonObject &value)
{
    return capi::PyObject_SetItem(object.pointer(), key.pointer(), value.pointer()) == 0;
}

bool removeItem(const PythonObject &object, const PythonObject &key)
{
    return capi::PyObject_DelItem(object.pointer(), key.pointer()) == 0;
}

bool isCallable(const PythonObject &object)
{
    return capi::PyCallable_Check(object.pointer()) != 0;
}

PyObjectStruct *call(const PythonObject &object, const PythonArguments &arguments,
                     const PythonKeywords &named)
{
    const PythonObject tuple = made(sequence(arguments, capi::PyTuple_New, capi::PyTuple_SetItem));
    if (named.empty()) {
        return capi::PyObject_Call(object.pointer(), tuple.pointer(), nullptr);
    }
    const PythonObject keywords = made(dictionary(keywordEntries(named)));
    return capi::PyObject_Call(object.pointer(), tuple.pointer(), keywords.pointer());
}

PyObjectStruct *list(const std::vector<PythonObject> &elements)
{
    return sequence(elements, capi::PyList_New, capi::PyList_SetItem);
}

PyObjectStruct *dictionary(const std::vector<std::pair<PythonObject, PythonObject>> &entries)
{
    PyObjectStruct *result = capi::PyDict_New();
    for (const auto &[key, value] : entries) {
        if (result && capi::PyDict_SetItem(result, key.pointer(), value.pointer()) != 0) {
            capi::Py_DecRef(result);
            return nullptr;
        }
    }
    return result;
}

PythonObject made(PyObjectStruct *pointer)
{
    if (!pointer) {
        const auto error = takeError();
        stopProcess(error ? error->description() : "Python could not make an object.");
    }
    return PythonObject::steal(pointer);
}

PythonObject takeOrThrow(PyObjectStruct *pointer)
{
    if (!pointer) {
        throwPendingError();
    }
    return PythonObject::steal(pointer);
}

std::optional<PythonObject> takeOrNothing(PyObjectStruct *pointer)
{
    if (!pointer) {
        clearError();
        return std::nullopt;
    }
    return PythonObject::steal(pointer);
}

std::optional<PythonError> takeError()
{
    if (!pythonErrorPending()) {
        return std::nullopt;
    }
    PyObjectStruct *type = nullptr;
    PyObjectStruct *value = nullptr;
    PyObjectStruct *traceback = nullptr;
    capi::PyErr_Fetch(&type, &value, &traceback);
    // Before 3.12 the value may still be the arguments that the exception would be made from.
    capi::PyErr_NormalizeException(&type, &value, &traceback);
    capi::Py_DecRef(type);
    const PythonObject exception = PythonObject::steal(value);
    if (!traceback) {
        return PythonError::exception(exception, std::nullopt);
    }
    if (capi::PyException_SetTraceback.find()) {
        capi::PyException_SetTraceback(value, traceback);
    }
    return PythonError::exception(exception, PythonObject::steal(traceback));
}

void clearError()
{
    capi::PyErr_Clear();
}

void throwPendingError()
{
    auto error = takeError();
    if (!error) {
        stopProcess("A Python call failed without an error.");
    }
    throw *std::move(error);
}

void stopFor(const std::string &message, const PythonError &error)
{
    logLine(LogTag::engine, error.description());
    stopProcess(message);
}

}
