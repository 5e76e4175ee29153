// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/bridge/python_object.h"

#include "engine/bridge/python_calls.h"
#include "engine/bridge/python_conversions.h"
#include "engine/bridge/python_library.h"
#include "engine/bridge/python_symbols.h"
#include "engine/bridge/python_views.h"
#include "engine/bridge/stop_process.h"

namespace veltro {
namespace {

std::string memberText(const std::string &name)
{
    return "PythonObject member '" + name + "'";
}

std::string elementText(const PythonObject &key)
{
    return "PythonObject element corresponding to the specified key values: [" + key.description() +
           "]";
}

/// The text of a str whatever it holds: what has no UTF-8 form becomes a question mark.
std::string replacedText(const PythonObject &text)
{
    const auto encoded =
        calls::takeOrNothing(capi::PyUnicode_AsEncodedString(text.pointer(), "utf-8", "replace"));
    const auto bytes = encoded ? encoded->to<PythonBytes>() : std::nullopt;
    return bytes ? bytes->bytes() : std::string();
}

}

PythonObject PythonObject::steal(PyObjectStruct *pointer)
{
    return PythonObject(PyReference::steal(pointer));
}

PythonObject PythonObject::borrow(PyObjectStruct *pointer)
{
    return PythonObject(PyReference::borrow(pointer));
}

PythonObject PythonObject::none()
{
    return borrow(capi::NoneStruct.address());
}

PythonObject PythonObject::fromBool(bool value)
{
    return calls::made(capi::PyBool_FromLong(value ? 1 : 0));
}

PythonObject PythonObject::fromSigned(std::int64_t value)
{
    return calls::made(capi::PyLong_FromLong(value));
}

PythonObject PythonObject::fromUnsigned(std::uint64_t value)
{
    return calls::made(capi::PyLong_FromUnsignedLong(value));
}

PythonObject PythonObject::fromDouble(double value)
{
    return calls::made(capi::PyFloat_FromDouble(value));
}

PythonObject PythonObject::fromText(std::string_view text)
{
    const char *start = text.empty() ? "" : text.data();
    const auto size = static_cast<capi::Size>(text.size());
    return calls::made(PythonLibrary::isLegacy()
                           ? capi::PyBytes_FromStringAndSize(start, size)
                           : capi::PyUnicode_DecodeUTF8(start, size, "surrogateescape"));
}

PythonObject PythonObject::fromElements(const std::vector<PythonObject> &elements)
{
    return calls::made(calls::list(elements));
}

PythonObject
PythonObject::fromEntries(const std::vector<std::pair<PythonObject, PythonObject>> &entries)
{
    return calls::made(calls::dictionary(entries));
}

PythonObject::PythonObject(const PythonBytes &bytes) : PythonObject(bytes.pythonObject()) {}

bool PythonObject::isNone() const
{
    return pointer() == capi::NoneStruct.address();
}

ThrowingPythonObject PythonObject::throwing() const
{
    return ThrowingPythonObject(*this);
}

CheckingPythonObject PythonObject::checking() const
{
    return CheckingPythonObject(*this);
}

PythonObject PythonObject::attr(const std::string &name) const
{
    try {
        return throwing().attr(name);
    } catch (const PythonError &error) {
        calls::stopFor("Could not access " + memberText(name), error);
    }
}

void PythonObject::setAttr(const std::string &name, const PythonObject &value) const
{
    try {
        throwing().setAttr(name, value);
    } catch (const PythonError &error) {
        calls::stopFor("Could not set " + memberText(name) + " to the specified value", error);
    }
}

PythonObject PythonObject::operator[](const PythonObject &key) const
{
    try {
        return throwing()[key];
    } catch (const PythonError &error) {
        calls::stopFor("Could not access " + elementText(key), error);
    }
}

void PythonObject::setItem(const PythonObject &key, const PythonObject &value) const
{
    try {
        throwing().setItem(key, value);
    } catch (const PythonError &error) {
        calls::stopFor("Could not set " + elementText(key), error);
    }
}

void PythonObject::removeItem(const PythonObject &key) const
{
    try {
        throwing().removeItem(key);
    } catch (const PythonError &error) {
        calls::stopFor("Could not delete " + elementText(key), error);
    }
}

PythonObject PythonObject::call(const PythonArguments &arguments, const PythonKeywords &named) const
{
    try {
        return throwing().call(arguments, named);
    } catch (const PythonError &error) {
        stopProcess(error.description());
    }
}

PythonIterator PythonObject::begin() const
{
    return PythonIterator(*this, PythonIterator::OnError::stopsProcess);
}

std::string PythonObject::description() const
{
    if (const auto text = calls::takeOrNothing(capi::PyObject_Str(pointer()))) {
        const auto plain = text->to<std::string>();
        return plain ? *plain : replacedText(*text);
    }
    const auto type = calls::takeOrNothing(capi::PyObject_Type(pointer()));
    const auto name = type ? type->checking().attr("__name__") : std::nullopt;
    const auto typeName = name ? name->to<std::string>() : std::nullopt;
    return "<unprintable " + typeName.value_or("object") + ">";
}

}
