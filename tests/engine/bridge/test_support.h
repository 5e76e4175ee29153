// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "engine/bridge/python.h"

#include <QTest>

#include <stdexcept>
#include <string>

template <>
inline char *QTest::toString(const std::string &text)
{
    return qstrdup(text.c_str());
}

namespace veltro::test {

/// The value of a Python expression.
inline PythonObject evaluate(const std::string &expression)
{
    return Python().attr("eval")(expression, Python().attr("dict")());
}

/// The function "f" that these lines define.
inline PythonObject function(const std::string &lines)
{
    const PythonObject names = Python().attr("dict")();
    Python().attr("exec")(lines, names);
    return names["f"];
}

inline std::string repr(const PythonObject &object)
{
    return Python().attr("repr")(object).description();
}

/// The error that an operation must throw.
template <typename Operation>
PythonError thrownBy(Operation operation)
{
    try {
        operation();
    } catch (const PythonError &error) {
        return error;
    }
    throw std::logic_error("nothing was thrown");
}

inline std::int64_t referenceCount(const PythonObject &object)
{
    return Python().import("sys").attr("getrefcount")(object).to<std::int64_t>().value();
}

}
