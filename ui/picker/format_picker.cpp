// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/picker/format_picker.h"

namespace veltro {
namespace {

constexpr FormatSection sectionOf(FormatPicker::Section section)
{
    return formatSections.at(static_cast<std::size_t>(section));
}

}

FormatPicker::FormatPicker(QObject *parent) : QObject(parent)
{
    showSection();
}

void FormatPicker::setRequest(const QVariant &request)
{
    m_request = request.value<FormatPickRequest>();
    m_section = Video;
    m_entries.setEntries(m_request.info.playlistEntries);
    Q_EMIT requestChanged();
    showSection();
}

QString FormatPicker::source() const
{
    if (m_request.info.uploader) {
        return *m_request.info.uploader;
    }
    return m_request.info.webpageURL.value_or(QUrl()).host();
}

void FormatPicker::setSection(Section section)
{
    if (m_section != section) {
        m_section = section;
        showSection();
    }
}

QStringList FormatPicker::sectionTitles() const
{
    QStringList titles;
    for (const FormatSection section : formatSections) {
        titles << sectionTitle(section);
    }
    return titles;
}

QList<int> FormatPicker::counts() const
{
    QList<int> counts;
    for (const FormatSection section : formatSections) {
        counts << countOf(section, m_request.info.formats);
    }
    return counts;
}

void FormatPicker::showSection()
{
    const FormatSection section = sectionOf(m_section);
    m_rows.setFormats(rowsOf(section, m_request.info.formats));
    m_empty = {};
    if (isPlaylist()) {
        m_empty = emptyPlaylist();
    } else if (m_rows.count() == 0) {
        m_empty = emptySection(section, m_request.info);
    }
    Q_EMIT sectionChanged();
}

EmptySection FormatPicker::emptyPlaylist() const
{
    const int count = m_entries.count();
    if (count == 0) {
        return {
            tr("This page is a list, and none of its entries has an address of its own."), {}, {}};
    }
    return {tr("This page is a list. Its entries are saved one by one in your default quality."),
            count == 1 ? tr("Save the one entry") : tr("Save all %1 entries").arg(count),
            {}};
}

void FormatPicker::pick(int row)
{
    if (row >= 0 && row < m_rows.count()) {
        // A copy: whoever listens may close the picker.
        const Format format = m_rows.formats()[static_cast<std::size_t>(row)];
        Q_EMIT picked(m_request.url, format);
    }
}

void FormatPicker::pickOffer()
{
    if (isPlaylist()) {
        saveEntries();
    } else if (m_empty.format) {
        const Format format = *m_empty.format;
        Q_EMIT picked(m_request.url, format);
    }
}

void FormatPicker::saveEntry(int row)
{
    if (const QString address = m_entries.address(row); !address.isEmpty()) {
        Q_EMIT entriesPicked(address);
    }
}

void FormatPicker::saveEntries()
{
    if (m_entries.count() > 0) {
        Q_EMIT entriesPicked(m_entries.addresses());
    }
}

}
