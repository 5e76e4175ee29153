// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "coordination/preferences.h"

#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <optional>

namespace veltro {

/// The controls of the settings over one record that others may edit too: an edit is announced,
/// and what the owner of the record makes of it comes back through the property. Each change of
/// the record is saved at once, wherever it was made. Main thread only.
class SettingsModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(veltro::Preferences preferences READ preferences WRITE setPreferences NOTIFY
                   preferencesChanged REQUIRED)
    Q_PROPERTY(QStringList qualityLabels READ qualityLabels CONSTANT)
    /// -1 for a selector that is not among the choices.
    Q_PROPERTY(int quality READ quality WRITE setQuality NOTIFY preferencesChanged)
    Q_PROPERTY(QStringList audioFormatLabels READ audioFormatLabels CONSTANT)
    Q_PROPERTY(int audioFormat READ audioFormat WRITE setAudioFormat NOTIFY preferencesChanged)
    Q_PROPERTY(bool extractAudio READ extractAudio WRITE setExtractAudio NOTIFY preferencesChanged)
    Q_PROPERTY(
        bool writeSubtitles READ writeSubtitles WRITE setWriteSubtitles NOTIFY preferencesChanged)
    Q_PROPERTY(bool wifiOnly READ wifiOnly WRITE setWifiOnly NOTIFY preferencesChanged)
    Q_PROPERTY(QString outputTemplate READ outputTemplate WRITE setOutputTemplate NOTIFY
                   preferencesChanged)
    /// The typed text while it is being typed, the stored codes otherwise.
    Q_PROPERTY(QString languages READ languages WRITE setLanguages NOTIFY languagesChanged)
    Q_PROPERTY(bool languagesFocused READ languagesFocused WRITE setLanguagesFocused NOTIFY
                   languagesChanged)
public:
    using Save = std::function<void(const Preferences &)>;

    explicit SettingsModel(QObject *parent = nullptr);
    /// Saves elsewhere; for tests.
    explicit SettingsModel(Save save, QObject *parent = nullptr);

    [[nodiscard]] const Preferences &preferences() const { return m_preferences; }
    void setPreferences(const Preferences &preferences);

    [[nodiscard]] QStringList qualityLabels() const;
    [[nodiscard]] int quality() const;
    void setQuality(int index);
    [[nodiscard]] QStringList audioFormatLabels() const;
    [[nodiscard]] int audioFormat() const;
    void setAudioFormat(int index);
    [[nodiscard]] bool extractAudio() const { return m_preferences.extractAudioByDefault; }
    void setExtractAudio(bool extract);
    [[nodiscard]] bool writeSubtitles() const { return m_preferences.writeSubtitles; }
    void setWriteSubtitles(bool write);
    [[nodiscard]] bool wifiOnly() const { return m_preferences.wifiOnly; }
    void setWifiOnly(bool only);
    [[nodiscard]] QString outputTemplate() const { return m_preferences.outputTemplate; }
    void setOutputTemplate(const QString &text);
    [[nodiscard]] QString languages() const;
    void setLanguages(const QString &text);
    [[nodiscard]] bool languagesFocused() const { return m_typedLanguages.has_value(); }
    void setLanguagesFocused(bool focused);

Q_SIGNALS:
    void preferencesChanged();
    void languagesChanged();
    /// The record as the user wants it.
    void edited(const veltro::Preferences &preferences);

private:
    template <typename Value>
    void edit(Value Preferences::*field, const Value &value);

    const Save m_save;
    Preferences m_preferences;
    /// Whether the record has been given: only what follows is a change.
    bool m_isLoaded = false;
    std::optional<QString> m_typedLanguages;
};

}
