// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QStringList>

namespace veltro {

// What a hundred thousand videos are called, with and without accents and in other scripts; the
// same for the same number.

inline QString sampleWord(int number, int step)
{
    static const QStringList words =
        QStringLiteral("Zürich Alpen über Wanderung Café music live concert Été mountain river "
                       "documentary cooking Straße bridge night city Ωmega история трейлер 音楽")
            .split(u' ');
    return words.at((number * 31 + step * 7) % words.size());
}

inline QString sampleTitle(int number)
{
    return QStringLiteral("%1 %2 %3 part %4")
        .arg(sampleWord(number, number % 5), sampleWord(number, 1), sampleWord(number, 2))
        .arg(number);
}

}
