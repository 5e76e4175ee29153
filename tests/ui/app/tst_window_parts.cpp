// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/app/link_drop.h"
#include "ui/app/window_memory.h"

#include <QTemporaryDir>
#include <QTest>

namespace veltro {

class TestWindowParts : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void aDropGivesItsFirstLink_data()
    {
        QTest::addColumn<QList<QUrl>>("addresses");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QUrl>("link");
        const QUrl page(QStringLiteral("https://a.example/1"));
        QTest::newRow("an address") << QList<QUrl>{page} << QString() << page;
        QTest::newRow("the first of two")
            << QList<QUrl>{QUrl(), page, QUrl(QStringLiteral("https://b.example"))} << QString()
            << page;
        const QUrl file = QUrl::fromLocalFile(QStringLiteral("/srv/films/clip.mp4"));
        QTest::newRow("a file") << QList<QUrl>{file} << file.toString() << QUrl();
        QTest::newRow("a link after a file") << QList<QUrl>{file, page} << QString() << page;
        QTest::newRow("a picture in its address")
            << QList<QUrl>{QUrl(QStringLiteral("data:image/png;base64,AAAA"))} << QString()
            << QUrl();
        QTest::newRow("text alone")
            << QList<QUrl>() << QStringLiteral(" https://a.example/1\n") << page;
        QTest::newRow("words") << QList<QUrl>() << QStringLiteral("not a link") << QUrl();
        QTest::newRow("an image") << QList<QUrl>() << QString() << QUrl();
        QTest::newRow("a whole document")
            << QList<QUrl>() << QStringLiteral("https://a.example/").repeated(10'000) << QUrl();
    }
    void aDropGivesItsFirstLink()
    {
        QFETCH(QList<QUrl>, addresses);
        QFETCH(QString, text);
        QTEST(LinkDrop::firstLink(addresses, text), "link");
    }

    void theWindowIsRememberedWithinItsLimits()
    {
        const QTemporaryDir folder;
        const QString file = folder.filePath(QStringLiteral("defaults.ini"));
        {
            WindowMemory memory{DefaultsStore(file)};
            QCOMPARE(memory.sidebarWidth(), 240);
            memory.setProperty("width", 1400);
            memory.setProperty("maximized", true);
            memory.setSidebarWidth(900);
            memory.save();
        }
        const WindowMemory again{DefaultsStore(file)};
        QCOMPARE(again.property("width").toInt(), 1400);
        QCOMPARE(again.property("maximized").toBool(), true);
        QCOMPARE(again.sidebarWidth(), 280);
    }

    void aBrokenMemoryIsForgotten()
    {
        const QTemporaryDir folder;
        const DefaultsStore store(folder.filePath(QStringLiteral("defaults.ini")));
        store.setData(QStringLiteral("MainWindow"), R"({"width":"x","height":-4})");
        const WindowMemory memory(store);
        QCOMPARE(memory.property("width").toInt(), 1120);
        QCOMPARE(memory.property("height").toInt(), 1);
        QCOMPARE(memory.sidebarWidth(), 240);
    }
};

}

QTEST_GUILESS_MAIN(veltro::TestWindowParts)
#include "tst_window_parts.moc"
