// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "library/download_item.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace veltro {

class Statement;

/// One item as a live query holds it by the hundred thousand: all texts in one piece of memory,
/// and the key that it is found by. Never changes, so that threads share it.
class LibraryRow {
public:
    enum class Text : std::uint8_t {
        sourceURL,
        title,
        uploader,
        thumbnailFileURL,
        localFileURL,
        formatLabel,
        stateRaw,
        failureReason,
        cookieHost,
        key,
    };

    /// The columns that the constructor reads, in their order.
    static constexpr std::string_view columns =
        "i.rowid, i.id, i.durationSeconds, i.fileSizeBytes, i.createdAt, i.completedAt, "
        "i.sourceURL, i.title, i.uploader, i.thumbnailFileURL, i.localFileURL, i.formatLabel, "
        "i.stateRaw, i.failureReason, i.cookieHost, k.key";

    /// From the row that the statement is at.
    explicit LibraryRow(const Statement &statement);

    [[nodiscard]] const QUuid &id() const { return m_id; }
    [[nodiscard]] qint64 fileSizeBytes() const { return m_fileSizeBytes; }
    [[nodiscard]] std::optional<double> durationSeconds() const { return m_durationSeconds; }
    [[nodiscard]] std::optional<QDateTime> completedAt() const;
    [[nodiscard]] std::string_view key() const { return bytes(Text::key); }
    [[nodiscard]] bool hasKey() const { return has(Text::key); }
    [[nodiscard]] bool has(Text which) const { return (m_present & bit(which)) != 0; }
    /// Empty where it is absent.
    [[nodiscard]] QString text(Text which) const;
    [[nodiscard]] QUrl url(Text which) const;
    [[nodiscard]] DownloadItem item() const;
    /// The same row with another key.
    [[nodiscard]] LibraryRow withKey(std::string_view key) const;

    /// Whether this one stands above the other: the newest first, the last one saved first among
    /// equals, and at the end what was never completed.
    [[nodiscard]] bool precedes(const LibraryRow &other) const;
    [[nodiscard]] bool hasPlaceOf(const LibraryRow &other) const;

private:
    static constexpr std::size_t textCount = 10;

    static std::uint16_t bit(Text which)
    {
        return static_cast<std::uint16_t>(1U << static_cast<unsigned>(which));
    }
    [[nodiscard]] std::string_view bytes(Text which) const;
    [[nodiscard]] std::optional<QString> optionalText(Text which) const;
    [[nodiscard]] std::optional<QUrl> optionalUrl(Text which) const;

    QUuid m_id;
    qint64 m_rowId = 0;
    qint64 m_fileSizeBytes = 0;
    std::optional<double> m_durationSeconds;
    qint64 m_createdAt = 0;   // milliseconds since 1970
    qint64 m_completedAt = 0; // the same; the smallest number when it is absent
    std::string m_texts;
    std::array<std::uint32_t, textCount> m_ends = {}; // of each text in m_texts
    std::uint16_t m_present = 0;                      // a bit for each text
};

using LibraryRows = std::vector<std::shared_ptr<const LibraryRow>>;

}
