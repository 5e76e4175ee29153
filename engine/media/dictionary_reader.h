// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "engine/bridge/python_object.h"

#include <QString>
#include <QUrl>

#include <optional>
#include <vector>

namespace veltro {

/// Reads typed values out of an interpreter dictionary whose keys may be missing or of any type.
/// Nothing here fails or leaves an error pending. REQUIRES: inside an interpreter job.
class DictionaryReader {
public:
    explicit DictionaryReader(const PythonObject &dictionary) : m_dictionary(dictionary) {}

    /// The object under the key, if there is one.
    [[nodiscard]] std::optional<PythonObject> object(const char *key) const;

    /// The text under the key; the fallback when the key is missing; nothing when the value is
    /// not a text.
    [[nodiscard]] std::optional<QString> text(const char *key, const QString &fallback = {}) const;

    /// The text under the key; nothing when the key is missing or the value is not a text.
    [[nodiscard]] std::optional<QString> presentText(const char *key) const;

    /// The address under the key; nothing unless it is a valid, non-empty one.
    [[nodiscard]] std::optional<QUrl> url(const char *key) const;

    [[nodiscard]] std::optional<double> number(const char *key) const;
    [[nodiscard]] std::optional<qint64> integer(const char *key) const;

    /// The elements of the list under the key; none when it is not a list.
    [[nodiscard]] std::vector<PythonObject> list(const char *key) const;

private:
    const PythonObject &m_dictionary;
};

/// The elements of a list; none when the object is not a list.
[[nodiscard]] std::vector<PythonObject> listElements(const PythonObject &list);

/// Whether the object is a dictionary.
[[nodiscard]] bool isDictionary(const PythonObject &object);

}
