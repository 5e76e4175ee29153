// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QString>
#include <QStringList>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace veltro {

/// One thing that a search of the desktop can find.
struct SearchableItem {
    QString uniqueIdentifier;
    QString domainIdentifier;
    QString contentType; ///< a media type
    QString title;
    std::optional<QString> contentDescription;
    std::optional<double> durationSeconds;
    std::optional<QUrl> contentURL;
    std::optional<QUrl> thumbnailURL;
    QStringList keywords;

    bool operator==(const SearchableItem &) const = default;
};

/// What the desktop's search finds of the program's things, kept in one file across launches. The
/// program writes it, the search helper reads it. Items are added or brought up to date, never
/// removed. Failures are silent but for one line in the log. Any thread.
class SearchIndex {
public:
    /// The user's index, over the standard file.
    static SearchIndex &standard();
    [[nodiscard]] static QString standardFile();

    /// Nothing is opened or made before it is needed.
    explicit SearchIndex(QString file);
    /// Writes what is still waiting.
    ~SearchIndex();
    SearchIndex(const SearchIndex &) = delete;
    SearchIndex &operator=(const SearchIndex &) = delete;

    /// Takes the items and returns at once; they are written on the index's own thread. An item
    /// with the identifier of an earlier one takes its place.
    void indexItems(std::vector<SearchableItem> items);
    /// Waits until everything taken so far is written.
    void finish();

    /// The items in which every term begins a word, accents and case aside; the best of the newest
    /// few thousand first, then the newest. Nothing for terms without a letter or digit.
    [[nodiscard]] std::vector<SearchableItem> search(const QStringList &terms, int limit) const;
    /// The items with these identifiers, in that order; what is unknown is left out.
    [[nodiscard]] std::vector<SearchableItem> items(const QStringList &identifiers) const;
    /// Hands over the identifier of every item, in the order of their bytes, in UTF-8. Before
    /// there is an index there are none. What is thrown meanwhile goes on to the caller.
    /// @returns whether all were read; when not, the log says why
    [[nodiscard]] bool eachIdentifier(const std::function<void(std::string_view)> &take) const;

private:
    class Writer;
    const QString m_file;
    const std::unique_ptr<Writer> m_writer;
};

/// A text as the index compares it: no case, no accents, and every letter of a script that is
/// written without blanks a word of its own.
[[nodiscard]] QString foldedForSearch(const QString &text);

}
