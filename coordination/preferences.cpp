// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "coordination/preferences.h"

#include "platform/user_folders.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <optional>

namespace veltro {
namespace {

const QString preferencesKey = QStringLiteral("Preferences");

std::optional<QString> textIn(const QJsonValue &value)
{
    return value.isString() ? std::optional(value.toString()) : std::nullopt;
}

std::optional<bool> switchIn(const QJsonValue &value)
{
    return value.isBool() ? std::optional(value.toBool()) : std::nullopt;
}

std::optional<QStringList> textsIn(const QJsonValue &value)
{
    const QJsonArray array = value.toArray();
    const bool isListOfTexts =
        value.isArray() && std::all_of(array.begin(), array.end(), [](const QJsonValue &element) {
            return element.isString();
        });
    if (!isListOfTexts) {
        return std::nullopt;
    }
    QStringList texts;
    for (const auto &element : array) {
        texts.append(element.toString());
    }
    return texts;
}

/// Nothing unless every key is there with a value of its type.
std::optional<Preferences> decode(const QByteArray &json)
{
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    const auto formatID = textIn(object.value(QStringLiteral("defaultFormatID")));
    const auto outputTemplate = textIn(object.value(QStringLiteral("outputTemplate")));
    const auto wifiOnly = switchIn(object.value(QStringLiteral("wifiOnly")));
    const auto writeSubtitles = switchIn(object.value(QStringLiteral("writeSubtitles")));
    const auto languages = textsIn(object.value(QStringLiteral("preferredSubtitleLanguages")));
    const auto extractAudio = switchIn(object.value(QStringLiteral("extractAudioByDefault")));
    const auto audioFormat = textIn(object.value(QStringLiteral("audioFormat")));
    if (!formatID || !outputTemplate || !wifiOnly || !writeSubtitles || !languages ||
        !extractAudio || !audioFormat) {
        return std::nullopt;
    }
    Preferences preferences;
    preferences.defaultFormatID = *formatID;
    preferences.outputTemplate = *outputTemplate;
    preferences.wifiOnly = *wifiOnly;
    preferences.writeSubtitles = *writeSubtitles;
    preferences.preferredSubtitleLanguages = *languages;
    preferences.extractAudioByDefault = *extractAudio;
    preferences.audioFormat = *audioFormat;
    return preferences;
}

QByteArray encode(const Preferences &preferences)
{
    const QJsonObject object{
        {QStringLiteral("defaultFormatID"), preferences.defaultFormatID},
        {QStringLiteral("outputTemplate"), preferences.outputTemplate},
        {QStringLiteral("wifiOnly"), preferences.wifiOnly},
        {QStringLiteral("writeSubtitles"), preferences.writeSubtitles},
        {QStringLiteral("preferredSubtitleLanguages"),
         QJsonArray::fromStringList(preferences.preferredSubtitleLanguages)},
        {QStringLiteral("extractAudioByDefault"), preferences.extractAudioByDefault},
        {QStringLiteral("audioFormat"), preferences.audioFormat},
    };
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

}

Preferences Preferences::load(const DefaultsStore &store)
{
    const std::optional<QByteArray> stored = store.data(preferencesKey);
    return stored ? decode(*stored).value_or(Preferences()) : Preferences();
}

void Preferences::save(const DefaultsStore &store) const
{
    store.setData(preferencesKey, encode(*this));
}

QUrl downloadsDirectory()
{
    const QString folder = documentsFolder() + QStringLiteral("/Downloads");
    QDir().mkpath(folder);
    return QUrl::fromLocalFile(folder);
}

}
