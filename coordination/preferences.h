// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/defaults_store.h"

#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QUrl>

namespace veltro {

/// What the user has set. A plain value, kept as one JSON document in the defaults store; a run
/// reads the format and the name template alone. Any thread.
struct Preferences {
    Q_GADGET
    Q_PROPERTY(QString defaultFormatID MEMBER defaultFormatID)
    Q_PROPERTY(QString outputTemplate MEMBER outputTemplate)
    Q_PROPERTY(bool wifiOnly MEMBER wifiOnly)
    Q_PROPERTY(bool writeSubtitles MEMBER writeSubtitles)
    Q_PROPERTY(QStringList preferredSubtitleLanguages MEMBER preferredSubtitleLanguages)
    Q_PROPERTY(bool extractAudioByDefault MEMBER extractAudioByDefault)
    Q_PROPERTY(QString audioFormat MEMBER audioFormat)
public:
    QString defaultFormatID = QStringLiteral("best"); ///< a selector
    QString outputTemplate = QStringLiteral("%(title)s [%(id)s].%(ext)s");
    bool wifiOnly = true;
    bool writeSubtitles = true;
    QStringList preferredSubtitleLanguages{QStringLiteral("en")};
    bool extractAudioByDefault = false;
    QString audioFormat = QStringLiteral("m4a");

    /// The stored record; the defaults in every field unless each field is stored with its type.
    [[nodiscard]] static Preferences load(const DefaultsStore &store = DefaultsStore());

    /// Replaces the stored record, on the disk when the store comes to it. A failure is logged; the
    /// record in hand stays in force.
    void save(const DefaultsStore &store = DefaultsStore()) const;

    bool operator==(const Preferences &) const = default;
};

/// The folder that downloads are saved in, made when it is not there. That it could not be made
/// shows when a run writes to it.
[[nodiscard]] QUrl downloadsDirectory();

}
