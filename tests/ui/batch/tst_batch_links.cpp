// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/batch/batch_links.h"

#include <QTest>

namespace veltro {

class TestBatchLinks : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void theCountIsOfWebLinks_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("said");
        const auto row = [](const char *why, const char *text, int count, const char *said) {
            QTest::newRow(why) << QString::fromUtf8(text) << count << QString::fromUtf8(said);
        };
        row("nothing", "", 0, "0 links detected");
        row("one", "https://a.example/1", 1, "1 link detected");
        row("two in a line", "https://a.example/1 http://b.example/2", 2, "2 links detected");
        row("the same twice", "https://a.example/1\n\n\thttps://a.example/1\n", 2,
            "2 links detected");
        row("other schemes", "ftp://a.example/1 a.example/1 mailto:a@b.example", 0,
            "0 links detected");
        row("another kind of space", "https://a.example/1\u2003https://a.example/2", 2,
            "2 links detected");
    }
    void theCountIsOfWebLinks()
    {
        QFETCH(QString, text);
        BatchLinks links;
        links.setText(text);
        QTEST(links.count(), "count");
        QTEST(links.countText(), "said");
    }
};

}

QTEST_GUILESS_MAIN(veltro::TestBatchLinks)
#include "tst_batch_links.moc"
