// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/plain_letters.h"

#include <array>

namespace veltro {
namespace {

struct TypedLetter {
    char32_t letter;
    const char *typed;
};

constexpr std::array<TypedLetter, 9> typedLetters{{
    {U'\u00DF', "ss"},
    {U'\u00E6', "ae"},
    {U'\u0153', "oe"},
    {U'\u00F0', "d"},
    {U'\u0111', "d"},
    {U'\u00F8', "o"},
    {U'\u00FE', "th"},
    {U'\u0131', "i"},
    {U'\u0142', "l"},
}};

}

bool isAccent(char32_t c)
{
    return (c >= 0x300 && c <= 0x36F) || (c >= 0x1AB0 && c <= 0x1AFF) ||
           (c >= 0x1DC0 && c <= 0x1DFF) || (c >= 0x20D0 && c <= 0x20FF);
}

QString typedAs(char32_t c)
{
    for (const TypedLetter &one : typedLetters) {
        if (one.letter == c) {
            return QString::fromLatin1(one.typed);
        }
    }
    return QString::fromUcs4(&c, 1);
}

}
