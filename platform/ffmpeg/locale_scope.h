// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <clocale>

namespace veltro::ffmpeg {

/// Numbers with a point and messages in English for the calling thread, whatever the user's locale
/// is: the libraries read and print numbers with strtod and printf. A new thread does not inherit
/// it, so every thread that calls the libraries opens a scope of its own.
class LocaleScope {
public:
    LocaleScope() : m_previous(uselocale(plain())) {}
    ~LocaleScope() { uselocale(m_previous); }
    LocaleScope(const LocaleScope &) = delete;
    LocaleScope &operator=(const LocaleScope &) = delete;

private:
    // Made once and kept. Characters stay UTF-8 where the system has that locale.
    static locale_t plain()
    {
        static const locale_t locale = [] {
            const locale_t base = newlocale(LC_ALL_MASK, "C", nullptr);
            const locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", base);
            return unicode ? unicode : base;
        }();
        return locale;
    }

    const locale_t m_previous;
};

}
