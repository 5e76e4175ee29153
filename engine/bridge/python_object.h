// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "engine/bridge/py_reference.h"

#include <concepts>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace veltro {

class CheckingPythonObject;
class PythonBytes;
class PythonFunction;
class PythonIterator;
class PythonObject;
class ThrowingPythonObject;

/// Positional arguments of a call.
using PythonArguments = std::vector<PythonObject>;
/// Named arguments of a call, in their order.
using PythonKeywords = std::vector<std::pair<std::string, PythonObject>>;

/// A handle to an interpreter object. Copies share one reference, so copying changes no count.
///
/// Used, and its last copy dropped, only inside an interpreter job: a result becomes a host value
/// before its job ends. An interpreter error in the operations of this class stops the process;
/// throwing() and checking() give the same operations with another end.
class PythonObject {
public:
    using Iterator = PythonIterator;

    [[nodiscard]] static PythonObject steal(PyObjectStruct *pointer);
    [[nodiscard]] static PythonObject borrow(PyObjectStruct *pointer);
    [[nodiscard]] static PythonObject none();

    // Host values become new objects. Templates where a plain parameter would take a pointer for a
    // truth value.
    template <std::same_as<bool> Flag>
    PythonObject(Flag value) : PythonObject(fromBool(value))
    {}
    template <std::signed_integral Number>
    requires(!std::same_as<Number, char>) PythonObject(Number value)
        : PythonObject(fromSigned(value))
    {}
    template <std::unsigned_integral Number>
    requires(!std::same_as<Number, bool>) PythonObject(Number value)
        : PythonObject(fromUnsigned(value))
    {}
    template <std::floating_point Number>
    PythonObject(Number value) : PythonObject(fromDouble(static_cast<double>(value)))
    {}
    /// Bytes that are not UTF-8 become the lone surrogates by which the interpreter itself carries
    /// such file names, so a path comes out of its file functions as it went in.
    PythonObject(std::string_view text) : PythonObject(fromText(text)) {}
    PythonObject(const std::string &text) : PythonObject(std::string_view(text)) {}
    PythonObject(const char *text) : PythonObject(std::string_view(text)) {}
    PythonObject(const PythonBytes &bytes);
    PythonObject(const PythonFunction &function);
    template <typename Value>
    PythonObject(const std::optional<Value> &value)
        : PythonObject(value ? PythonObject(*value) : none())
    {}
    PythonObject(const std::vector<PythonObject> &elements) : PythonObject(fromElements(elements))
    {}
    template <typename Element>
    PythonObject(const std::vector<Element> &elements)
        : PythonObject(std::vector<PythonObject>(elements.begin(), elements.end()))
    {}
    /// A dict with its entries in this order.
    template <typename Key, typename Value>
    PythonObject(const std::vector<std::pair<Key, Value>> &entries)
        : PythonObject(fromEntries({entries.begin(), entries.end()}))
    {}
    template <typename Key, typename Value>
    PythonObject(const std::map<Key, Value> &entries)
        : PythonObject(fromEntries({entries.begin(), entries.end()}))
    {}

    [[nodiscard]] PyObjectStruct *pointer() const { return m_reference->pointer(); }
    [[nodiscard]] bool isNone() const;
    /// The same operations, with a PythonError for an interpreter error.
    [[nodiscard]] ThrowingPythonObject throwing() const;
    /// The same operations, with nothing for an interpreter error.
    [[nodiscard]] CheckingPythonObject checking() const;

    [[nodiscard]] PythonObject attr(const std::string &name) const;
    void setAttr(const std::string &name, const PythonObject &value) const;
    [[nodiscard]] PythonObject operator[](const PythonObject &key) const;
    void setItem(const PythonObject &key, const PythonObject &value) const;
    void removeItem(const PythonObject &key) const;
    PythonObject call(const PythonArguments &arguments = {},
                      const PythonKeywords &named = {}) const;
    template <typename... Arguments>
    PythonObject operator()(const Arguments &...arguments) const
    {
        return call(PythonArguments{PythonObject(arguments)...});
    }

    /// One pass over the elements.
    [[nodiscard]] PythonIterator begin() const;
    [[nodiscard]] std::nullptr_t end() const { return nullptr; }

    /// The interpreter's str() of the object. Never fails: what has no UTF-8 form is replaced, and
    /// an object without a text is described by its type.
    [[nodiscard]] std::string description() const;

    /// The object as a host value; nothing when it is of another kind, and no error stays pending.
    /// Defined for the types of python_conversions.h.
    template <typename Value>
    [[nodiscard]] std::optional<Value> to() const;

private:
    explicit PythonObject(std::shared_ptr<const PyReference> reference)
        : m_reference(std::move(reference))
    {}
    static PythonObject fromBool(bool value);
    static PythonObject fromSigned(std::int64_t value);
    static PythonObject fromUnsigned(std::uint64_t value);
    static PythonObject fromDouble(double value);
    static PythonObject fromText(std::string_view text);
    static PythonObject fromElements(const std::vector<PythonObject> &elements);
    static PythonObject
    fromEntries(const std::vector<std::pair<PythonObject, PythonObject>> &entries);

    std::shared_ptr<const PyReference> m_reference; // never null
};

}
