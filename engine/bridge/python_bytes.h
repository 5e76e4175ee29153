// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "engine/bridge/python_object.h"

#include <string>
#include <string_view>
#include <utility>

namespace veltro {

/// A Python bytes object.
class PythonBytes {
public:
    /// A new object with these bytes.
    explicit PythonBytes(std::string_view bytes);

    [[nodiscard]] const PythonObject &pythonObject() const { return m_object; }
    [[nodiscard]] std::string bytes() const;

private:
    template <typename Value>
    friend struct PythonConversion;
    struct Checked {};
    PythonBytes(Checked, PythonObject object) : m_object(std::move(object)) {}

    PythonObject m_object; // always of the bytes type
};

}
