// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/batch/batch_links.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace veltro {

class TestBatchLinks : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void theCountIsOfWebLinks()
    {
        BatchLinks links;
        const auto countOf = [&](const QString &text) {
            links.setText(text);
            return links.count();
        };
        QCOMPARE(countOf(u"ftp://a.example/1 a.example/1 mailto:a@b.example"_s), 0);
        QCOMPARE(links.countText(), u"0 links detected"_s);
        QCOMPARE(countOf(u"https://a.example/1"_s), 1);
        QCOMPARE(links.countText(), u"1 link detected"_s);
        QCOMPARE(countOf(u"https://a.example/1 http://b.example/2"_s), 2);
        QCOMPARE(countOf(u"https://a.example/1\n\n\thttps://a.example/1\n"_s), 2); // the same twice
        QCOMPARE(countOf(u"https://a.example/1\u2003https://a.example/2"_s), 2);
        QCOMPARE(countOf(QString()), 0);
    }
};

}

QTEST_GUILESS_MAIN(veltro::TestBatchLinks)
#include "tst_batch_links.moc"
