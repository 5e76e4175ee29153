// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
// What the plain, the throwing and the checking form of an operation share. Included by the
// sources of this folder only.
#include "engine/bridge/python_error.h"
#include "engine/bridge/python_object.h"

#include <optional>
#include <string>

namespace veltro::calls {

// Each makes one call of the interpreter. A null object or a false leaves its error pending.
[[nodiscard]] PyObjectStruct *attribute(const PythonObject &object, const std::string &name);
[[nodiscard]] bool setAttribute(const PythonObject &object, const std::string &name,
                                const PythonObject &value);
[[nodiscard]] PyObjectStruct *item(const PythonObject &object, const PythonObject &key);
[[nodiscard]] bool setItem(const PythonObject &object, const PythonObject &key,
                           const PythonObject &value);
[[nodiscard]] bool removeItem(const PythonObject &object, const PythonObject &key);
[[nodiscard]] bool isCallable(const PythonObject &object);
[[nodiscard]] PyObjectStruct *call(const PythonObject &object, const PythonArguments &arguments,
                                   const PythonKeywords &named);

/// A new list with these elements; null with an error pending where the interpreter has no memory.
[[nodiscard]] PyObjectStruct *list(const std::vector<PythonObject> &elements);
[[nodiscard]] PyObjectStruct *
dictionary(const std::vector<std::pair<PythonObject, PythonObject>> &entries);

/// A new object that only a lack of memory keeps from being made; that stops the process.
[[nodiscard]] PythonObject made(PyObjectStruct *pointer);

/// The new object, or the pending error thrown.
[[nodiscard]] PythonObject takeOrThrow(PyObjectStruct *pointer);
/// The new object, or nothing and no error pending.
[[nodiscard]] std::optional<PythonObject> takeOrNothing(PyObjectStruct *pointer);

/// The pending error, no longer pending; nothing when there is none.
[[nodiscard]] std::optional<PythonError> takeError();
void clearError();
[[noreturn]] void throwPendingError();

/// Ends the process with the message; what the interpreter reported goes to the log before it.
[[noreturn]] void stopFor(const std::string &message, const PythonError &error);

}
