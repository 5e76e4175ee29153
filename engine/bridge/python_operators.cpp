// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/bridge/python_operators.h"

#include "engine/bridge/python_calls.h"
#include "engine/bridge/python_symbols.h"
#include "engine/bridge/stop_process.h"

namespace veltro {
namespace {

/// The numbers by which the interpreter knows its comparisons.
enum class Comparison { less, lessOrEqual, equal, notEqual, greater, greaterOrEqual };

bool compare(const PythonObject &left, const PythonObject &right, Comparison comparison)
{
    const int answer = capi::PyObject_RichCompareBool(left.pointer(), right.pointer(),
                                                      static_cast<int>(comparison));
    if (answer < 0) {
        const auto error = calls::takeError();
        stopProcess(error ? error->description() : "A Python comparison failed.");
    }
    return answer > 0;
}

PythonObject apply(capi::Binary &operation, const PythonObject &left, const PythonObject &right)
{
    return calls::made(operation(left.pointer(), right.pointer()));
}

PythonObject &applyInPlace(capi::Binary &operation, PythonObject &left, const PythonObject &right)
{
    left = apply(operation, left, right);
    return left;
}

}

bool operator==(const PythonObject &left, const PythonObject &right)
{
    return compare(left, right, Comparison::equal);
}

bool operator!=(const PythonObject &left, const PythonObject &right)
{
    return compare(left, right, Comparison::notEqual);
}

bool operator<(const PythonObject &left, const PythonObject &right)
{
    return compare(left, right, Comparison::less);
}

bool operator<=(const PythonObject &left, const PythonObject &right)
{
    return compare(left, right, Comparison::lessOrEqual);
}

bool operator>(const PythonObject &left, const PythonObject &right)
{
    return compare(left, right, Comparison::greater);
}

bool operator>=(const PythonObject &left, const PythonObject &right)
{
    return compare(left, right, Comparison::greaterOrEqual);
}

PythonObject operator+(const PythonObject &left, const PythonObject &right)
{
    return apply(capi::PyNumber_Add, left, right);
}

PythonObject operator-(const PythonObject &left, const PythonObject &right)
{
    return apply(capi::PyNumber_Subtract, left, right);
}

PythonObject operator*(const PythonObject &left, const PythonObject &right)
{
    return apply(capi::PyNumber_Multiply, left, right);
}

PythonObject operator/(const PythonObject &left, const PythonObject &right)
{
    return apply(capi::PyNumber_TrueDivide, left, right);
}

PythonObject operator&(const PythonObject &left, const PythonObject &right)
{
    return apply(capi::PyNumber_And, left, right);
}

PythonObject operator|(const PythonObject &left, const PythonObject &right)
{
    return apply(capi::PyNumber_Or, left, right);
}

PythonObject operator^(const PythonObject &left, const PythonObject &right)
{
    return apply(capi::PyNumber_Xor, left, right);
}

PythonObject operator-(const PythonObject &operand)
{
    return calls::made(capi::PyNumber_Negative(operand.pointer()));
}

PythonObject operator~(const PythonObject &operand)
{
    return calls::made(capi::PyNumber_Invert(operand.pointer()));
}

PythonObject &operator+=(PythonObject &left, const PythonObject &right)
{
    return applyInPlace(capi::PyNumber_InPlaceAdd, left, right);
}

PythonObject &operator-=(PythonObject &left, const PythonObject &right)
{
    return applyInPlace(capi::PyNumber_InPlaceSubtract, left, right);
}

PythonObject &operator*=(PythonObject &left, const PythonObject &right)
{
    return applyInPlace(capi::PyNumber_InPlaceMultiply, left, right);
}

PythonObject &operator/=(PythonObject &left, const PythonObject &right)
{
    return applyInPlace(capi::PyNumber_InPlaceTrueDivide, left, right);
}

PythonObject &operator&=(PythonObject &left, const PythonObject &right)
{
    return applyInPlace(capi::PyNumber_InPlaceAnd, left, right);
}

PythonObject &operator|=(PythonObject &left, const PythonObject &right)
{
    return applyInPlace(capi::PyNumber_InPlaceOr, left, right);
}

PythonObject &operator^=(PythonObject &left, const PythonObject &right)
{
    return applyInPlace(capi::PyNumber_InPlaceXor, left, right);
}

}
