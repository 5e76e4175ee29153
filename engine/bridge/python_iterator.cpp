// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/bridge/python_iterator.h"

#include "engine/bridge/python_calls.h"
#include "engine/bridge/python_symbols.h"
#include "engine/bridge/stop_process.h"

namespace veltro {

PythonIterator::PythonIterator(const PythonObject &iterable, OnError onError) : m_onError(onError)
{
    PyObjectStruct *iterator = capi::PyObject_GetIter(iterable.pointer());
    if (!iterator) {
        fail();
    }
    m_pythonIterator = PythonObject::steal(iterator);
    advance();
}

PythonIterator &PythonIterator::operator++()
{
    advance();
    return *this;
}

void PythonIterator::advance()
{
    m_element.reset();
    if (PyObjectStruct *next = capi::PyIter_Next(m_pythonIterator->pointer())) {
        m_element = PythonObject::steal(next);
    } else if (pythonErrorPending()) {
        fail();
    }
}

void PythonIterator::fail() const
{
    if (m_onError == OnError::throws) {
        calls::throwPendingError();
    }
    const auto error = calls::takeError();
    stopProcess(error ? error->description() : "A Python iteration failed without an error.");
}

}
