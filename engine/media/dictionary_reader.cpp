// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/media/dictionary_reader.h"

#include "engine/bridge/python.h"

#include <string>

namespace veltro {
namespace {

bool isInstance(const PythonObject &object, const char *type)
{
    const std::optional<PythonObject> answer =
        Python().attr("isinstance").checking().call({object, Python().attr(type)});
    return answer && answer->to<bool>().value_or(false);
}

std::optional<QString> textOf(const PythonObject &object)
{
    const std::optional<std::string> text = object.to<std::string>();
    return text ? std::optional(QString::fromStdString(*text)) : std::nullopt;
}

}

std::optional<PythonObject> DictionaryReader::object(const char *key) const
{
    return m_dictionary.checking()[key];
}

std::optional<QString> DictionaryReader::text(const char *key, const QString &fallback) const
{
    const std::optional<PythonObject> value = object(key);
    return value ? textOf(*value) : fallback;
}

std::optional<QString> DictionaryReader::presentText(const char *key) const
{
    const std::optional<PythonObject> value = object(key);
    return value ? textOf(*value) : std::nullopt;
}

std::optional<QUrl> DictionaryReader::url(const char *key) const
{
    const QUrl address(presentText(key).value_or(QString()));
    return address.isValid() ? std::optional(address) : std::nullopt;
}

std::optional<double> DictionaryReader::number(const char *key) const
{
    const std::optional<PythonObject> value = object(key);
    return value ? value->to<double>() : std::nullopt;
}

std::optional<qint64> DictionaryReader::integer(const char *key) const
{
    const std::optional<PythonObject> value = object(key);
    const std::optional<std::int64_t> number = value ? value->to<std::int64_t>() : std::nullopt;
    return number ? std::optional<qint64>(*number) : std::nullopt;
}

std::vector<PythonObject> DictionaryReader::list(const char *key) const
{
    const std::optional<PythonObject> value = object(key);
    return value ? listElements(*value) : std::vector<PythonObject>();
}

std::vector<PythonObject> listElements(const PythonObject &list)
{
    if (!isInstance(list, "list")) {
        return {}; // a text can be iterated too, but its letters are nobody's entries
    }
    return list.to<std::vector<PythonObject>>().value_or(std::vector<PythonObject>());
}

bool isDictionary(const PythonObject &object)
{
    return isInstance(object, "dict");
}

}
