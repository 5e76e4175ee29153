// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "engine/bridge/python_bytes.h"
#include "engine/bridge/python_iterator.h"
#include "engine/bridge/python_object.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace veltro {

/// How an object becomes a host value: read() yields nothing for an object of another kind and
/// leaves no error pending.
template <typename Value>
struct PythonConversion;

template <>
struct PythonConversion<PythonObject> {
    static std::optional<PythonObject> read(const PythonObject &object) { return object; }
};

/// Only from a str, as UTF-8; a str with lone surrogates has no such form.
template <>
struct PythonConversion<std::string> {
    static std::optional<std::string> read(const PythonObject &object);
};

template <>
struct PythonConversion<std::int64_t> {
    static std::optional<std::int64_t> read(const PythonObject &object);
};

/// An integer of any size or sign, reduced to its lowest 64 bits.
template <>
struct PythonConversion<std::uint64_t> {
    static std::optional<std::uint64_t> read(const PythonObject &object);
};

/// From an integer too.
template <>
struct PythonConversion<double> {
    static std::optional<double> read(const PythonObject &object);
};

/// Only from a bool.
template <>
struct PythonConversion<bool> {
    static std::optional<bool> read(const PythonObject &object);
};

template <>
struct PythonConversion<PythonBytes> {
    static std::optional<PythonBytes> read(const PythonObject &object);
};

/// None is an absent value.
template <typename Value>
struct PythonConversion<std::optional<Value>> {
    static std::optional<std::optional<Value>> read(const PythonObject &object)
    {
        if (object.isNone()) {
            return std::optional<Value>();
        }
        auto value = object.to<Value>();
        return value ? std::optional<std::optional<Value>>(std::move(value)) : std::nullopt;
    }
};

/// The elements of any iterable.
std::optional<std::vector<PythonObject>> elementsOf(const PythonObject &iterable);
/// The entries of a dict, in its order; nothing for any other object.
std::optional<std::vector<std::pair<PythonObject, PythonObject>>>
entriesOf(const PythonObject &dictionary);

template <typename Element>
struct PythonConversion<std::vector<Element>> {
    static std::optional<std::vector<Element>> read(const PythonObject &object)
    {
        const auto elements = elementsOf(object);
        if (!elements) {
            return std::nullopt;
        }
        std::vector<Element> result;
        result.reserve(elements->size());
        for (const PythonObject &element : *elements) {
            auto value = element.to<Element>();
            if (!value) {
                return std::nullopt;
            }
            result.push_back(*std::move(value));
        }
        return result;
    }
};

/// A dict with its entries in the order that it keeps.
template <typename Key, typename Value>
struct PythonConversion<std::vector<std::pair<Key, Value>>> {
    static std::optional<std::vector<std::pair<Key, Value>>> read(const PythonObject &object)
    {
        const auto entries = entriesOf(object);
        if (!entries) {
            return std::nullopt;
        }
        std::vector<std::pair<Key, Value>> result;
        result.reserve(entries->size());
        for (const auto &[entryKey, entryValue] : *entries) {
            auto key = entryKey.template to<Key>();
            auto value = entryValue.template to<Value>();
            if (!key || !value) {
                return std::nullopt;
            }
            result.emplace_back(*std::move(key), *std::move(value));
        }
        return result;
    }
};

template <typename Key, typename Value>
struct PythonConversion<std::map<Key, Value>> {
    static std::optional<std::map<Key, Value>> read(const PythonObject &object)
    {
        auto entries = object.to<std::vector<std::pair<Key, Value>>>();
        if (!entries) {
            return std::nullopt;
        }
        return std::map<Key, Value>(std::make_move_iterator(entries->begin()),
                                    std::make_move_iterator(entries->end()));
    }
};

template <typename Value>
std::optional<Value> PythonObject::to() const
{
    return PythonConversion<Value>::read(*this);
}

}
