// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/ui/samples/sample_texts.h"

using namespace Qt::StringLiterals;

namespace veltro {

const QStringList &sampleTitles()
{
    static const QStringList titles{
        u"A walk along the harbour"_s,
        u"The complete recording of the long evening, with every speech, every "
        "interval and the whole of the discussion that followed it, part 2 of 7"_s,
        u"נמל בשעת ערב: הליכה ארוכה לאורך המזח"_s,
        u"🎬🌊 Harbour at night 👩‍🚀🇳🇱 🎉"_s,
        u"<b>Bold</b> <img src=\"http://127.0.0.1:9/x.png\"> &amp; <a "
        "href=\"file:///\">link</a>"_s,
        u"report\u202Egpj.exe\u202C and more"_s,
        u"港の夜の散歩 — 最終回"_s,
        u"One line\nand a second\r\nand a third"_s,
        QString(10'000, u'w'),
    };
    return titles;
}

}
