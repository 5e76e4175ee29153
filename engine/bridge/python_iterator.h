// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "engine/bridge/python_object.h"

#include <optional>

namespace veltro {

/// One pass over an iterable object, for a range-for loop.
class PythonIterator {
public:
    /// What an interpreter error in the middle of the pass leads to.
    enum class OnError { stopsProcess, throws };

    PythonIterator(const PythonObject &iterable, OnError onError);

    [[nodiscard]] const PythonObject &operator*() const { return *m_element; }
    PythonIterator &operator++();
    [[nodiscard]] bool operator==(std::nullptr_t) const { return !m_element; }

private:
    void advance();
    [[noreturn]] void fail() const;

    const OnError m_onError;
    std::optional<PythonObject> m_pythonIterator;
    std::optional<PythonObject> m_element; // nothing at the end
};

}
