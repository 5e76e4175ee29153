// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "coordination/format_pick_request.h"
#include "ui/picker/format_rows_model.h"
#include "ui/picker/format_sections.h"
#include "ui/picker/playlist_entries_model.h"

#include <QObject>
#include <QUrl>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

namespace veltro {

/// What the format picker shows of one page: the lists with their counts, and what it offers where
/// a list is empty. It starts nothing: a choice is announced. Main thread only.
class FormatPicker : public QObject {
    Q_OBJECT
    QML_ELEMENT
    /// A FormatPickRequest; the picker opens on its first list each time.
    Q_PROPERTY(QVariant request READ request WRITE setRequest NOTIFY requestChanged)
    Q_PROPERTY(QString title READ title NOTIFY requestChanged)
    /// The uploader, else the host of the page, else nothing.
    Q_PROPERTY(QString source READ source NOTIFY requestChanged)
    Q_PROPERTY(QUrl thumbnail READ thumbnail NOTIFY requestChanged)
    Q_PROPERTY(bool isPlaylist READ isPlaylist NOTIFY requestChanged)
    Q_PROPERTY(Section section READ section WRITE setSection NOTIFY sectionChanged)
    /// By section, in the order of the enumeration.
    Q_PROPERTY(QStringList sectionTitles READ sectionTitles CONSTANT)
    Q_PROPERTY(QList<int> counts READ counts NOTIFY requestChanged)
    Q_PROPERTY(veltro::FormatRowsModel *rows READ rows CONSTANT)
    Q_PROPERTY(veltro::PlaylistEntriesModel *entries READ entries CONSTANT)
    /// One line where the section lists nothing; empty elsewhere.
    Q_PROPERTY(QString emptyReason READ emptyReason NOTIFY sectionChanged)
    /// The label of what can be saved there; empty when nothing can.
    Q_PROPERTY(QString offer READ offer NOTIFY sectionChanged)
public:
    enum Section { Video, Audio, All };
    Q_ENUM(Section)

    explicit FormatPicker(QObject *parent = nullptr);

    [[nodiscard]] QVariant request() const { return QVariant::fromValue(m_request); }
    void setRequest(const QVariant &request);
    [[nodiscard]] QString title() const { return m_request.info.title; }
    [[nodiscard]] QString source() const;
    [[nodiscard]] QUrl thumbnail() const { return m_request.info.thumbnailURL.value_or(QUrl()); }
    [[nodiscard]] bool isPlaylist() const { return m_request.info.isPlaylist; }
    [[nodiscard]] Section section() const { return m_section; }
    void setSection(Section section);
    [[nodiscard]] QStringList sectionTitles() const;
    [[nodiscard]] QList<int> counts() const;
    [[nodiscard]] FormatRowsModel *rows() { return &m_rows; }
    [[nodiscard]] PlaylistEntriesModel *entries() { return &m_entries; }
    [[nodiscard]] QString emptyReason() const { return m_empty.reason; }
    [[nodiscard]] QString offer() const { return m_empty.offer; }

public Q_SLOTS:
    /// Announces the format of that row of the current section.
    void pick(int row);
    /// Announces what is offered where the section lists nothing.
    void pickOffer();
    /// Announces one entry of the playlist, or all of them.
    void saveEntry(int row);
    void saveEntries();

Q_SIGNALS:
    void requestChanged();
    void sectionChanged();
    void picked(const QUrl &page, const veltro::Format &format);
    /// One http or https address a line.
    void entriesPicked(const QString &addresses);

private:
    void showSection();
    [[nodiscard]] EmptySection emptyPlaylist() const;

    FormatPickRequest m_request;
    Section m_section = Video;
    FormatRowsModel m_rows;
    PlaylistEntriesModel m_entries;
    EmptySection m_empty;
};

}

Q_DECLARE_METATYPE(veltro::Format)
