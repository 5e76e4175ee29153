// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/plain_letters.h"

namespace veltro {

bool isAccent(char32_t c)
{
    return (c >= 0x300 && c <= 0x36F) || (c >= 0x1AB0 && c <= 0x1AFF) ||
           (c >= 0x1DC0 && c <= 0x1DFF) || (c >= 0x20D0 && c <= 0x20FF);
}

QString typedAs(char32_t c)
{
    switch (c) {
    case U'\u00DF':
        return QStringLiteral("ss");
    case U'\u00E6':
        return QStringLiteral("ae");
    case U'\u0153':
        return QStringLiteral("oe");
    case U'\u00F0':
    case U'\u0111':
        return QStringLiteral("d");
    case U'\u00F8':
        return QStringLiteral("o");
    case U'\u00FE':
        return QStringLiteral("th");
    case U'\u0131':
        return QStringLiteral("i");
    case U'\u0142':
        return QStringLiteral("l");
    default:
        return QString::fromUcs4(&c, 1);
    }
}

}
