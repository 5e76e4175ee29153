// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/search_index.h"

#include "platform/log.h"
#include "platform/plain_letters.h"
#include "platform/search_index_store.h"
#include "platform/serial_queue.h"
#include "platform/user_folders.h"

#include <QFileInfo>

#include <string>
#include <utility>

namespace veltro {
namespace {

void logSearchFailure(const char *what, const std::exception &error)
{
    logLine(LogTag::engine,
            std::string("the search index cannot be ") + what + ": " + error.what());
}

/// Scripts that are written without blanks between words.
bool isWrittenWithoutBlanks(char32_t c)
{
    switch (QChar::script(c)) {
    case QChar::Script_Han:
    case QChar::Script_Hiragana:
    case QChar::Script_Katakana:
    case QChar::Script_Thai:
    case QChar::Script_Lao:
    case QChar::Script_Khmer:
    case QChar::Script_Myanmar:
        return !QChar::isMark(c);
    default:
        return false;
    }
}

bool isWordPart(char32_t c)
{
    return QChar::isLetterOrNumber(c) || QChar::isMark(c);
}

/// A folded term as the words that the index has of it.
QStringList wordsOf(const QString &folded)
{
    QStringList words;
    QString word;
    for (const char32_t c : folded.toStdU32String()) {
        if (isWordPart(c)) {
            word += QString::fromUcs4(&c, 1);
        } else if (!word.isEmpty()) {
            words += std::exchange(word, QString());
        }
    }
    if (!word.isEmpty()) {
        words += word;
    }
    return words;
}

/// Every term a phrase whose last word may go on; empty when there is nothing to look for.
QString queryFor(const QStringList &terms)
{
    QStringList phrases;
    for (const QString &term : terms) {
        const QStringList words = wordsOf(foldedForSearch(term));
        if (!words.isEmpty()) {
            phrases += QLatin1Char('"') + words.join(QLatin1Char(' ')) + QStringLiteral("\"*");
        }
    }
    return phrases.join(QStringLiteral(" AND "));
}

}

/// The index's own thread, and the connection that it writes through.
class SearchIndex::Writer {
public:
    explicit Writer(QString file) : m_file(std::move(file)) {}

    void take(std::vector<SearchableItem> items)
    {
        m_queue.async([this, items = std::move(items)] { write(items); });
    }
    void finish()
    {
        m_queue.sync([] {});
    }

private:
    void write(const std::vector<SearchableItem> &items)
    {
        try {
            try {
                writeOnce(items);
            } catch (const SearchIndexError &error) {
                m_store.reset();
                if (!error.meansDamage()) {
                    throw;
                }
                SearchIndexStore::moveAside(m_file);
                writeOnce(items);
            }
        } catch (const std::exception &error) {
            m_store.reset(); // the next write opens the file anew
            logSearchFailure("written", error);
        }
    }

    void writeOnce(const std::vector<SearchableItem> &items)
    {
        if (!m_store) {
            m_store = std::make_unique<SearchIndexStore>(m_file, SearchIndexStore::Access::write);
        }
        m_store->write(items);
    }

    const QString m_file;
    std::unique_ptr<SearchIndexStore> m_store; // used on the queue only
    // Nobody waits for an entry, and those of a whole library take a while. Last: it ends first.
    SerialQueue m_queue{"com.veltro.search", SerialQueue::Priority::background};
};

SearchIndex &SearchIndex::standard()
{
    static SearchIndex index(standardFile());
    return index;
}

QString SearchIndex::standardFile()
{
    return dataFolder() + QStringLiteral("/search.sqlite");
}

SearchIndex::SearchIndex(QString file)
    : m_file(std::move(file)), m_writer(std::make_unique<Writer>(m_file))
{}

SearchIndex::~SearchIndex() = default;

void SearchIndex::indexItems(std::vector<SearchableItem> items)
{
    m_writer->take(std::move(items));
}

void SearchIndex::finish()
{
    m_writer->finish();
}

std::vector<SearchableItem> SearchIndex::search(const QStringList &terms, int limit) const
{
    const QString query = queryFor(terms);
    if (query.isEmpty() || limit <= 0 || !QFileInfo::exists(m_file)) {
        return {};
    }
    try {
        return SearchIndexStore(m_file, SearchIndexStore::Access::read).matching(query, limit);
    } catch (const std::exception &error) {
        logSearchFailure("read", error);
        return {};
    }
}

std::vector<SearchableItem> SearchIndex::items(const QStringList &identifiers) const
{
    std::vector<SearchableItem> found;
    if (!QFileInfo::exists(m_file)) {
        return found;
    }
    try {
        const SearchIndexStore store(m_file, SearchIndexStore::Access::read);
        for (const QString &identifier : identifiers) {
            if (std::optional<SearchableItem> item = store.item(identifier)) {
                found.push_back(std::move(*item));
            }
        }
    } catch (const std::exception &error) {
        logSearchFailure("read", error);
    }
    return found;
}

bool SearchIndex::eachIdentifier(const std::function<void(std::string_view)> &take) const
{
    if (!QFileInfo::exists(m_file)) {
        return true;
    }
    try {
        SearchIndexStore(m_file, SearchIndexStore::Access::read).eachIdentifier(take);
        return true;
    } catch (const SearchIndexError &error) {
        logSearchFailure("read", error);
        return false;
    }
}

QString foldedForSearch(const QString &text)
{
    const QString decomposed = text.normalized(QString::NormalizationForm_KD)
                                   .toCaseFolded()
                                   .normalized(QString::NormalizationForm_KD);
    QString folded;
    folded.reserve(decomposed.size());
    bool afterWordOfItsOwn = false;
    for (const char32_t c : decomposed.toStdU32String()) {
        if (isAccent(c)) {
            continue;
        }
        const bool isMark = QChar::isMark(c);
        const bool isWordOfItsOwn = isWrittenWithoutBlanks(c);
        if (isWordOfItsOwn || (afterWordOfItsOwn && !isMark)) {
            folded += QLatin1Char(' ');
        }
        folded += typedAs(c);
        // A mark belongs to the letter before it.
        afterWordOfItsOwn = isMark ? afterWordOfItsOwn : isWordOfItsOwn;
    }
    return folded;
}

}
