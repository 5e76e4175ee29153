// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/search_key.h"

#include <cstring>

namespace veltro {
namespace {

// No byte of UTF-8, so no part of what is looked for.
constexpr char border = '\xff';

}

QString SearchFolding::name() const
{
    // These have letters whose case is their own; in all others a letter folds alike.
    switch (m_locale.language()) {
    case QLocale::Turkish:
    case QLocale::Azerbaijani:
        return QStringLiteral("tr");
    case QLocale::Lithuanian:
        return QStringLiteral("lt");
    default:
        return QStringLiteral("any");
    }
}

QByteArray SearchFolding::needle(const QString &text) const
{
    // Lower case first, by the language: folding alone would take a Turkish I for a dotted one.
    const QString composed = text.normalized(QString::NormalizationForm_C);
    return m_locale.toLower(composed)
        .toCaseFolded()
        .normalized(QString::NormalizationForm_C)
        .toUtf8();
}

QByteArray SearchFolding::key(const QString &title, const QString &uploader) const
{
    return needle(title) + border + needle(uploader);
}

bool keyContains(std::string_view key, std::string_view needle)
{
    return needle.empty() ||
           memmem(key.data(), key.size(), needle.data(), needle.size()) != nullptr;
}

}
