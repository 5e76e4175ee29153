// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/settings_model.h"

#include "engine/selectors/format_selector.h"
#include "ui/settings/subtitle_languages.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace veltro {
namespace {

struct AudioFormatChoice {
    const char *label;
    const char *value;
};

constexpr std::array<AudioFormatChoice, 4> audioFormatChoices{
    {{"M4A", "m4a"}, {"MP3", "mp3"}, {"Opus", "opus"}, {"FLAC", "flac"}}};

/// The place of the first element that fits; -1 when there is none.
template <typename Range, typename Fits>
int placeOf(const Range &range, Fits fits)
{
    const auto found = std::find_if(std::begin(range), std::end(range), fits);
    return found == std::end(range) ? -1
                                    : static_cast<int>(std::distance(std::begin(range), found));
}

template <typename Range>
bool isPlaceIn(const Range &range, int index)
{
    return index >= 0 && static_cast<std::size_t>(index) < std::size(range);
}

}

SettingsModel::SettingsModel(QObject *parent)
    : SettingsModel(
          [store = DefaultsStore()](const Preferences &preferences) { preferences.save(store); },
          parent)
{}

SettingsModel::SettingsModel(Save save, QObject *parent) : QObject(parent), m_save(std::move(save))
{}

void SettingsModel::setPreferences(const Preferences &preferences)
{
    if (!std::exchange(m_isLoaded, true)) {
        m_preferences = preferences;
    } else if (m_preferences != preferences) {
        m_preferences = preferences;
        m_save(m_preferences);
    } else {
        return;
    }
    Q_EMIT preferencesChanged();
    if (!m_typedLanguages) {
        Q_EMIT languagesChanged();
    }
}

template <typename Value>
void SettingsModel::edit(Value Preferences::*field, const Value &value)
{
    if (m_preferences.*field != value) {
        Preferences changed = m_preferences;
        changed.*field = value;
        Q_EMIT edited(changed);
    }
}

QStringList SettingsModel::qualityLabels() const
{
    QStringList labels;
    for (const DefaultFormatChoice &choice : defaultFormatChoices()) {
        labels << choice.label;
    }
    return labels;
}

int SettingsModel::quality() const
{
    return placeOf(defaultFormatChoices(), [this](const DefaultFormatChoice &choice) {
        return choice.selector == m_preferences.defaultFormatID;
    });
}

void SettingsModel::setQuality(int index)
{
    if (isPlaceIn(defaultFormatChoices(), index)) {
        edit(&Preferences::defaultFormatID,
             defaultFormatChoices()[static_cast<std::size_t>(index)].selector);
    }
}

QStringList SettingsModel::audioFormatLabels() const
{
    QStringList labels;
    for (const AudioFormatChoice &choice : audioFormatChoices) {
        labels << QLatin1String(choice.label);
    }
    return labels;
}

int SettingsModel::audioFormat() const
{
    return placeOf(audioFormatChoices, [this](const AudioFormatChoice &choice) {
        return m_preferences.audioFormat == QLatin1String(choice.value);
    });
}

void SettingsModel::setAudioFormat(int index)
{
    if (isPlaceIn(audioFormatChoices, index)) {
        const AudioFormatChoice &choice = audioFormatChoices.at(static_cast<std::size_t>(index));
        edit(&Preferences::audioFormat, QString::fromLatin1(choice.value));
    }
}

void SettingsModel::setExtractAudio(bool extract)
{
    edit(&Preferences::extractAudioByDefault, extract);
}

void SettingsModel::setWriteSubtitles(bool write)
{
    edit(&Preferences::writeSubtitles, write);
}

void SettingsModel::setWifiOnly(bool only)
{
    edit(&Preferences::wifiOnly, only);
}

void SettingsModel::setOutputTemplate(const QString &text)
{
    edit(&Preferences::outputTemplate, text);
}

QString SettingsModel::languages() const
{
    return m_typedLanguages.value_or(languagesText(m_preferences.preferredSubtitleLanguages));
}

void SettingsModel::setLanguages(const QString &text)
{
    if (m_typedLanguages) {
        m_typedLanguages = text;
    }
    edit(&Preferences::preferredSubtitleLanguages, languagesOf(text));
    Q_EMIT languagesChanged();
}

void SettingsModel::setLanguagesFocused(bool focused)
{
    if (focused != m_typedLanguages.has_value()) {
        m_typedLanguages = focused ? std::optional(languages()) : std::nullopt;
        Q_EMIT languagesChanged();
    }
}

}
