// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "engine/bridge/python_object.h"

namespace veltro {

// Comparison and arithmetic as the interpreter does them. An interpreter error stops the process.
[[nodiscard]] bool operator==(const PythonObject &left, const PythonObject &right);
[[nodiscard]] bool operator!=(const PythonObject &left, const PythonObject &right);
[[nodiscard]] bool operator<(const PythonObject &left, const PythonObject &right);
[[nodiscard]] bool operator<=(const PythonObject &left, const PythonObject &right);
[[nodiscard]] bool operator>(const PythonObject &left, const PythonObject &right);
[[nodiscard]] bool operator>=(const PythonObject &left, const PythonObject &right);

[[nodiscard]] PythonObject operator+(const PythonObject &left, const PythonObject &right);
[[nodiscard]] PythonObject operator-(const PythonObject &left, const PythonObject &right);
[[nodiscard]] PythonObject operator*(const PythonObject &left, const PythonObject &right);
[[nodiscard]] PythonObject operator/(const PythonObject &left, const PythonObject &right);
[[nodiscard]] PythonObject operator&(const PythonObject &left, const PythonObject &right);
[[nodiscard]] PythonObject operator|(const PythonObject &left, const PythonObject &right);
[[nodiscard]] PythonObject operator^(const PythonObject &left, const PythonObject &right);
[[nodiscard]] PythonObject operator-(const PythonObject &operand);
[[nodiscard]] PythonObject operator~(const PythonObject &operand);

// The handle on the left then holds the result; a mutable object is changed in place.
PythonObject &operator+=(PythonObject &left, const PythonObject &right);
PythonObject &operator-=(PythonObject &left, const PythonObject &right);
PythonObject &operator*=(PythonObject &left, const PythonObject &right);
PythonObject &operator/=(PythonObject &left, const PythonObject &right);
PythonObject &operator&=(PythonObject &left, const PythonObject &right);
PythonObject &operator|=(PythonObject &left, const PythonObject &right);
PythonObject &operator^=(PythonObject &left, const PythonObject &right);

}
