// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/library_row.h"

#include "library/database.h"

#include <limits>

namespace veltro {
namespace {

constexpr int firstTextColumn = 6;
constexpr qint64 neverCompleted = std::numeric_limits<qint64>::min();

QDateTime momentOf(qint64 milliseconds)
{
    return QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC);
}

QUuid idIn(std::string_view text)
{
    return QUuid::fromString(QLatin1String(text.data(), static_cast<qsizetype>(text.size())));
}

QByteArray bytesOf(std::string_view text)
{
    return {text.data(), static_cast<qsizetype>(text.size())};
}

}

LibraryRow::LibraryRow(const Statement &statement)
    : m_id(idIn(statement.text(1)))
    , m_rowId(statement.integer(0))
    , m_fileSizeBytes(statement.integer(3))
    , m_createdAt(statement.integer(4))
    , m_completedAt(statement.isNull(5) ? neverCompleted : statement.integer(5))
{
    if (!statement.isNull(2)) {
        m_durationSeconds = statement.real(2);
    }
    std::array<std::string_view, textCount> texts;
    std::size_t size = 0;
    for (std::size_t index = 0; index < textCount; ++index) {
        texts.at(index) = statement.text(firstTextColumn + static_cast<int>(index));
        size += texts.at(index).size();
        m_ends.at(index) = static_cast<std::uint32_t>(size);
        // To ask takes as long as to read, and a text with something in it is there.
        if (!texts.at(index).empty() ||
            !statement.isNull(firstTextColumn + static_cast<int>(index))) {
            m_present |= bit(static_cast<Text>(index));
        }
    }
    m_texts.reserve(size);
    for (const std::string_view text : texts) {
        m_texts.append(text);
    }
}

std::string_view LibraryRow::bytes(Text which) const
{
    const auto index = static_cast<std::size_t>(which);
    const std::uint32_t begin = index == 0 ? 0 : m_ends.at(index - 1);
    return std::string_view(m_texts).substr(begin, m_ends.at(index) - begin);
}

QString LibraryRow::text(Text which) const
{
    const std::string_view text = bytes(which);
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QUrl LibraryRow::url(Text which) const
{
    return QUrl::fromEncoded(bytesOf(bytes(which)));
}

std::optional<QString> LibraryRow::optionalText(Text which) const
{
    return has(which) ? std::optional(text(which)) : std::nullopt;
}

std::optional<QUrl> LibraryRow::optionalUrl(Text which) const
{
    return has(which) ? std::optional(url(which)) : std::nullopt;
}

std::optional<QDateTime> LibraryRow::completedAt() const
{
    return m_completedAt == neverCompleted ? std::nullopt : std::optional(momentOf(m_completedAt));
}

DownloadItem LibraryRow::item() const
{
    DownloadItem item;
    item.id = m_id;
    item.sourceURL = url(Text::sourceURL);
    item.title = text(Text::title);
    item.uploader = optionalText(Text::uploader);
    item.durationSeconds = m_durationSeconds;
    item.thumbnailFileURL = optionalUrl(Text::thumbnailFileURL);
    item.localFileURL = optionalUrl(Text::localFileURL);
    item.formatLabel = text(Text::formatLabel);
    item.fileSizeBytes = m_fileSizeBytes;
    item.stateRaw = text(Text::stateRaw);
    item.failureReason = optionalText(Text::failureReason);
    item.createdAt = momentOf(m_createdAt);
    item.completedAt = completedAt();
    item.cookieHost = optionalText(Text::cookieHost);
    return item;
}

LibraryRow LibraryRow::withKey(std::string_view key) const
{
    LibraryRow row = *this;
    row.m_texts.resize(m_ends.at(textCount - 2));
    row.m_texts.append(key);
    row.m_ends.at(textCount - 1) = static_cast<std::uint32_t>(row.m_texts.size());
    row.m_present |= bit(Text::key);
    return row;
}

bool LibraryRow::precedes(const LibraryRow &other) const
{
    return m_completedAt != other.m_completedAt ? m_completedAt > other.m_completedAt
                                                : m_rowId > other.m_rowId;
}

bool LibraryRow::hasPlaceOf(const LibraryRow &other) const
{
    return m_rowId == other.m_rowId && m_completedAt == other.m_completedAt;
}

}
