// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <memory>

namespace veltro {

/// An interpreter object; its layout is the interpreter's own business.
struct PyObjectStruct;

/// Owns exactly one strong reference to an interpreter object.
/// Made and dropped only while the interpreter lock is held; debug builds abort otherwise. A
/// release build then lets the object live on rather than harm it.
class PyReference {
public:
    /// Takes over a new reference. REQUIRES: not null.
    static std::shared_ptr<const PyReference> steal(PyObjectStruct *pointer);
    /// Adds a reference to somebody else's object. REQUIRES: not null.
    static std::shared_ptr<const PyReference> borrow(PyObjectStruct *pointer);

    ~PyReference();
    PyReference(const PyReference &) = delete;
    PyReference &operator=(const PyReference &) = delete;

    [[nodiscard]] PyObjectStruct *pointer() const { return m_pointer; }

private:
    explicit PyReference(PyObjectStruct *pointer) : m_pointer(pointer) {}

    PyObjectStruct *const m_pointer;
};

}
