// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/bridge/python_conversions.h"

#include "engine/bridge/python_calls.h"
#include "engine/bridge/python_symbols.h"

namespace veltro {
namespace {

/// The number, or nothing where the interpreter reported an error by handing back the mark.
template <typename Number>
std::optional<Number> numberUnlessFailed(Number number, Number mark)
{
    if (number == mark && pythonErrorPending()) {
        calls::clearError();
        return std::nullopt;
    }
    return number;
}

bool isDictionary(const PythonObject &object)
{
    const int answer = capi::PyObject_IsInstance(object.pointer(), capi::PyDict_Type.address());
    if (answer < 0) {
        calls::clearError();
    }
    return answer > 0;
}

}

std::optional<std::string> PythonConversion<std::string>::read(const PythonObject &object)
{
    if (!capi::PyUnicode_AsUTF8AndSize.find()) {
        const char *text = capi::PyUnicode_AsUTF8(object.pointer());
        if (text) {
            return std::string(text);
        }
    } else {
        // With its size, since a title may hold a NUL.
        capi::Size size = 0;
        const char *text = capi::PyUnicode_AsUTF8AndSize(object.pointer(), &size);
        if (text) {
            return std::string(text, static_cast<std::size_t>(size));
        }
    }
    calls::clearError();
    return std::nullopt;
}

std::optional<std::int64_t> PythonConversion<std::int64_t>::read(const PythonObject &object)
{
    return numberUnlessFailed<std::int64_t>(capi::PyLong_AsLong(object.pointer()), -1);
}

std::optional<std::uint64_t> PythonConversion<std::uint64_t>::read(const PythonObject &object)
{
    return numberUnlessFailed<std::uint64_t>(capi::PyLong_AsUnsignedLongMask(object.pointer()),
                                             static_cast<std::uint64_t>(-1));
}

std::optional<double> PythonConversion<double>::read(const PythonObject &object)
{
    return numberUnlessFailed<double>(capi::PyFloat_AsDouble(object.pointer()), -1.0);
}

std::optional<bool> PythonConversion<bool>::read(const PythonObject &object)
{
    const auto type = calls::takeOrNothing(capi::PyObject_Type(object.pointer()));
    if (!type || type->pointer() != capi::PyBool_Type.address()) {
        return std::nullopt;
    }
    return object.pointer() == capi::TrueStruct.address();
}

std::optional<PythonBytes> PythonConversion<PythonBytes>::read(const PythonObject &object)
{
    char *start = nullptr;
    capi::Size size = 0;
    if (capi::PyBytes_AsStringAndSize(object.pointer(), &start, &size) != 0) {
        calls::clearError();
        return std::nullopt;
    }
    return PythonBytes(PythonBytes::Checked(), object);
}

PythonBytes::PythonBytes(std::string_view bytes)
    : m_object(calls::made(capi::PyBytes_FromStringAndSize(bytes.empty() ? "" : bytes.data(),
                                                           static_cast<capi::Size>(bytes.size()))))
{}

std::string PythonBytes::bytes() const
{
    char *start = nullptr;
    capi::Size size = 0;
    if (capi::PyBytes_AsStringAndSize(m_object.pointer(), &start, &size) != 0) {
        calls::clearError();
        return {};
    }
    return {start, static_cast<std::size_t>(size)};
}

std::optional<std::vector<PythonObject>> elementsOf(const PythonObject &iterable)
{
    const auto iterator = calls::takeOrNothing(capi::PyObject_GetIter(iterable.pointer()));
    if (!iterator) {
        return std::nullopt;
    }
    std::vector<PythonObject> elements;
    while (PyObjectStruct *next = capi::PyIter_Next(iterator->pointer())) {
        elements.push_back(PythonObject::steal(next));
    }
    if (pythonErrorPending()) {
        calls::clearError();
        return std::nullopt;
    }
    return elements;
}

std::optional<std::vector<std::pair<PythonObject, PythonObject>>>
entriesOf(const PythonObject &dictionary)
{
    if (!isDictionary(dictionary)) {
        return std::nullopt;
    }
    std::vector<std::pair<PythonObject, PythonObject>> entries;
    capi::Size position = 0;
    PyObjectStruct *key = nullptr;
    PyObjectStruct *value = nullptr;
    while (capi::PyDict_Next(dictionary.pointer(), &position, &key, &value)) {
        entries.emplace_back(PythonObject::borrow(key), PythonObject::borrow(value));
    }
    return entries;
}

}
