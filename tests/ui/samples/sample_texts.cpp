// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/ui/samples/sample_texts.h"

namespace veltro {

const QStringList &sampleTitles()
{
    static const QStringList titles{
        QStringLiteral("A walk along the harbour"),
        QStringLiteral("The complete recording of the long evening, with every speech, every "
                       "interval and the whole of the discussion that followed it, part 2 of 7"),
        QStringLiteral("נמל בשעת ערב: הליכה ארוכה לאורך המזח"),
        QStringLiteral("🎬🌊 Harbour at night 👩‍🚀🇳🇱 🎉"),
        QStringLiteral("<b>Bold</b> <img src=\"http://127.0.0.1:9/x.png\"> &amp; <a "
                       "href=\"file:///\">link</a>"),
        QStringLiteral("report\u202Egpj.exe\u202C and more"),
        QStringLiteral("港の夜の散歩 — 最終回"),
        QStringLiteral("One line\nand a second\r\nand a third"),
        QString(10'000, u'w'),
    };
    return titles;
}

}
