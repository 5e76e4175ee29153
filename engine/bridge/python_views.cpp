// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/bridge/python_views.h"

#include "engine/bridge/python_calls.h"
#include "engine/bridge/python_iterator.h"

namespace veltro {
namespace {

void throwUnless(bool done)
{
    if (!done) {
        calls::throwPendingError();
    }
}

bool clearedUnless(bool done)
{
    if (!done) {
        calls::clearError();
    }
    return done;
}

}

PythonObject ThrowingPythonObject::attr(const std::string &name) const
{
    return calls::takeOrThrow(calls::attribute(m_base, name));
}

void ThrowingPythonObject::setAttr(const std::string &name, const PythonObject &value) const
{
    throwUnless(calls::setAttribute(m_base, name, value));
}

PythonObject ThrowingPythonObject::operator[](const PythonObject &key) const
{
    return calls::takeOrThrow(calls::item(m_base, key));
}

void ThrowingPythonObject::setItem(const PythonObject &key, const PythonObject &value) const
{
    throwUnless(calls::setItem(m_base, key, value));
}

void ThrowingPythonObject::removeItem(const PythonObject &key) const
{
    throwUnless(calls::removeItem(m_base, key));
}

PythonObject ThrowingPythonObject::call(const PythonArguments &arguments,
                                        const PythonKeywords &named) const
{
    if (!calls::isCallable(m_base)) {
        throw PythonError::invalidCall(m_base);
    }
    return calls::takeOrThrow(calls::call(m_base, arguments, named));
}

PythonIterator ThrowingPythonObject::begin() const
{
    return PythonIterator(m_base, PythonIterator::OnError::throws);
}

std::optional<PythonObject> CheckingPythonObject::attr(const std::string &name) const
{
    return calls::takeOrNothing(calls::attribute(m_base, name));
}

std::optional<PythonObject> CheckingPythonObject::operator[](const PythonObject &key) const
{
    return calls::takeOrNothing(calls::item(m_base, key));
}

bool CheckingPythonObject::setAttr(const std::string &name, const PythonObject &value) const
{
    return clearedUnless(calls::setAttribute(m_base, name, value));
}

bool CheckingPythonObject::setItem(const PythonObject &key, const PythonObject &value) const
{
    return clearedUnless(calls::setItem(m_base, key, value));
}

bool CheckingPythonObject::removeItem(const PythonObject &key) const
{
    return clearedUnless(calls::removeItem(m_base, key));
}

std::optional<PythonObject> CheckingPythonObject::call(const PythonArguments &arguments,
                                                       const PythonKeywords &named) const
{
    return calls::takeOrNothing(calls::call(m_base, arguments, named));
}

}
