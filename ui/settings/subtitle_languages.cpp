// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/subtitle_languages.h"

#include <QStringView>

namespace veltro {
namespace {

bool isBlank(QChar character)
{
    // Other white space is part of a code, strange as such a code would be.
    return character.category() == QChar::Separator_Space || character == u'\t';
}

QStringView withoutBlanks(QStringView piece)
{
    while (!piece.isEmpty() && isBlank(piece.front())) {
        piece = piece.sliced(1);
    }
    while (!piece.isEmpty() && isBlank(piece.back())) {
        piece.chop(1);
    }
    return piece;
}

}

QString languagesText(const QStringList &languages)
{
    return languages.join(QStringLiteral(", "));
}

QStringList languagesOf(const QString &text)
{
    QStringList languages;
    for (const QStringView piece : QStringView(text).split(u',')) {
        if (const QStringView code = withoutBlanks(piece); !code.isEmpty()) {
            languages << code.toString();
        }
    }
    return languages;
}

}
