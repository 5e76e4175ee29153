// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "engine/bridge/python_object.h"

#include <concepts>
#include <functional>
#include <memory>
#include <utility>

namespace veltro {

/// A host closure that the interpreter keeps for as long as it keeps the callable made from it.
struct PyFunction {
    enum class CallingConvention {
        varArgs,             ///< the positional arguments as a list
        varArgsWithKeywords, ///< and the named ones as a list of pairs
    };

    using Closure = std::function<PythonObject(PythonArguments, PythonKeywords)>;

    PyFunction(CallingConvention convention, Closure body)
        : callingConvention(convention), closure(std::move(body))
    {}

    const CallingConvention callingConvention;
    const Closure closure;
};

/// A host closure as something that the interpreter can call: convert it to a PythonObject.
///
/// The closure runs on the thread of the call, with the interpreter lock held. What it throws is
/// raised in the interpreter: a PythonError that carries an exception, or a PythonObject that is
/// one, as that exception; any other error as an Exception whose message begins with the name of
/// the error's type.
class PythonFunction {
public:
    template <typename Closure>
    requires std::is_invocable_r_v<PythonObject, Closure &, PythonArguments>
    explicit PythonFunction(Closure closure)
        : m_function(std::make_shared<const PyFunction>(
              PyFunction::CallingConvention::varArgs,
              // A closure may want the arguments by value: NOLINTNEXTLINE(performance-*)
              [closure = std::move(closure)](PythonArguments arguments,
                                             const PythonKeywords &) mutable -> PythonObject {
                  return closure(std::move(arguments));
              }))
    {}
    template <typename Closure>
    requires std::is_invocable_r_v<PythonObject, Closure &, PythonArguments, PythonKeywords>
    explicit PythonFunction(Closure closure)
        : m_function(std::make_shared<const PyFunction>(
              PyFunction::CallingConvention::varArgsWithKeywords, std::move(closure)))
    {}

    [[nodiscard]] const std::shared_ptr<const PyFunction> &function() const { return m_function; }

private:
    std::shared_ptr<const PyFunction> m_function;
};

}
