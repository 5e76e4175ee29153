// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "engine/bridge/python_object.h"

#include <optional>
#include <string>
#include <utility>

namespace veltro {

/// An object whose every access and call throws a PythonError instead of stopping the process.
class ThrowingPythonObject {
public:
    explicit ThrowingPythonObject(PythonObject base) : m_base(std::move(base)) {}

    [[nodiscard]] const PythonObject &base() const { return m_base; }
    [[nodiscard]] PythonObject attr(const std::string &name) const;
    void setAttr(const std::string &name, const PythonObject &value) const;
    [[nodiscard]] PythonObject operator[](const PythonObject &key) const;
    void setItem(const PythonObject &key, const PythonObject &value) const;
    void removeItem(const PythonObject &key) const;
    PythonObject call(const PythonArguments &arguments = {},
                      const PythonKeywords &named = {}) const;
    [[nodiscard]] PythonIterator begin() const;
    [[nodiscard]] std::nullptr_t end() const { return nullptr; }

private:
    PythonObject m_base;
};

/// An object whose every access and call yields nothing, and leaves no error pending, where the
/// interpreter reports one.
class CheckingPythonObject {
public:
    explicit CheckingPythonObject(PythonObject base) : m_base(std::move(base)) {}

    [[nodiscard]] const PythonObject &base() const { return m_base; }
    [[nodiscard]] std::optional<PythonObject> attr(const std::string &name) const;
    [[nodiscard]] std::optional<PythonObject> operator[](const PythonObject &key) const;
    /// Whether it could be set.
    bool setAttr(const std::string &name, const PythonObject &value) const;
    bool setItem(const PythonObject &key, const PythonObject &value) const;
    bool removeItem(const PythonObject &key) const;
    std::optional<PythonObject> call(const PythonArguments &arguments = {},
                                     const PythonKeywords &named = {}) const;

private:
    PythonObject m_base;
};

}
