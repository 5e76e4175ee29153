// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/bridge/py_reference.h"

#include "engine/bridge/python_lock.h"
#include "engine/bridge/python_symbols.h"
#include "engine/bridge/stop_process.h"

namespace veltro {
namespace {

/// Whether a count may change on this thread now; a debug build does not survive a no.
bool mayChangeCount()
{
    const bool held = python_lock::isHeld();
#ifndef NDEBUG
    if (!held) {
        stopProcess("A Python reference count was about to change without the interpreter lock.");
    }
#endif
    return held;
}

}

std::shared_ptr<const PyReference> PyReference::steal(PyObjectStruct *pointer)
{
    return std::shared_ptr<const PyReference>(new PyReference(pointer));
}

std::shared_ptr<const PyReference> PyReference::borrow(PyObjectStruct *pointer)
{
    mayChangeCount();
    capi::Py_IncRef(pointer);
    return steal(pointer);
}

PyReference::~PyReference()
{
    if (mayChangeCount()) {
        capi::Py_DecRef(m_pointer);
    }
}

}
