// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/search_key.h"

#include "platform/plain_letters.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace veltro {
namespace {

// No byte of UTF-8, so no part of what is looked for.
constexpr char border = '\xff';

constexpr char32_t dotlessI = U'\u0131';

bool isAscii(const QString &text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
}

}

SearchFolding::SearchFolding(const QLocale &locale) : m_locale(locale)
{
    switch (locale.language()) {
    case QLocale::Turkish:
    case QLocale::Azerbaijani:
        m_alphabet = Alphabet::turkish;
        break;
    case QLocale::Lithuanian:
        m_alphabet = Alphabet::lithuanian;
        break;
    default:
        break;
    }
}

QString SearchFolding::name() const
{
    // Another rule needs other names: the keys of the store are made anew then.
    switch (m_alphabet) {
    case Alphabet::turkish:
        return QStringLiteral("plain-tr");
    case Alphabet::lithuanian:
        return QStringLiteral("plain-lt");
    case Alphabet::other:
        break;
    }
    return QStringLiteral("plain");
}

QString SearchFolding::folded(const QString &text) const
{
    const QString composed = text.normalized(QString::NormalizationForm_KC);
    // Lower case first, by the language: folding alone would take a Turkish I for a dotted one.
    const QString small =
        m_alphabet == Alphabet::other ? composed.toLower() : m_locale.toLower(composed);
    return small.toCaseFolded().normalized(QString::NormalizationForm_KC);
}

/// A folded text as it is typed without accents.
QString SearchFolding::plain(const QString &folded) const
{
    if (isAscii(folded)) {
        return folded;
    }
    QString result;
    result.reserve(folded.size());
    for (const char32_t c : folded.normalized(QString::NormalizationForm_D).toStdU32String()) {
        // Turkish has keys for both.
        if (c == dotlessI && m_alphabet == Alphabet::turkish) {
            result += QChar(u'\u0131');
        } else if (!isAccent(c)) {
            result += typedAs(c);
        }
    }
    return result.normalized(QString::NormalizationForm_C);
}

QByteArray SearchFolding::needle(const QString &text) const
{
    return folded(text).toUtf8();
}

QByteArray SearchFolding::key(const QString &title, const QString &uploader) const
{
    const std::array texts{folded(title), folded(uploader)};
    const std::array plainTexts{plain(texts[0]), plain(texts[1])};
    QByteArray key = plainTexts[0].toUtf8() + border + plainTexts[1].toUtf8();
    // What is typed without accents is in the above, and with them here, where there are any.
    for (std::size_t index = 0; index < texts.size(); ++index) {
        if (texts.at(index) != plainTexts.at(index)) {
            key += border + texts.at(index).toUtf8();
        }
    }
    return key;
}

bool keyContains(std::string_view key, std::string_view needle)
{
    return needle.empty() ||
           memmem(key.data(), key.size(), needle.data(), needle.size()) != nullptr;
}

}
