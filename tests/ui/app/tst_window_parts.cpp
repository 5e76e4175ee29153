// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/app/link_drop.h"
#include "ui/app/window_memory.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace veltro {

class TestWindowParts : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void aDropGivesItsFirstLink()
    {
        const QUrl page(u"https://a.example/1"_s);
        const QUrl picture(u"data:image/png;base64,AAAA"_s);
        const QUrl file(u"file:///srv/films/clip.mp4"_s);
        QCOMPARE(LinkDrop::firstLink({QUrl(), picture, page, QUrl(u"https://b.example"_s)}, {}),
                 page);
        QCOMPARE(LinkDrop::firstLink({picture}, {}), QUrl());
        QCOMPARE(LinkDrop::firstLink({file}, file.toString()), QUrl());
        const QString document = u"https://a.example/"_s.repeated(10'000);
        QCOMPARE(LinkDrop::firstLink({}, document), QUrl());
    }

    void theWindowIsRememberedWithinItsLimits()
    {
        const QTemporaryDir folder;
        const QString file = folder.filePath(u"defaults.ini"_s);
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
        const DefaultsStore store(folder.filePath(u"defaults.ini"_s));
        store.setData(u"MainWindow"_s, R"({"width":"x","height":-4})");
        const WindowMemory memory(store);
        QCOMPARE(memory.property("width").toInt(), 1120);
        QCOMPARE(memory.property("height").toInt(), 1);
        QCOMPARE(memory.sidebarWidth(), 240);
    }
};

}

QTEST_GUILESS_MAIN(veltro::TestWindowParts)
#include "tst_window_parts.moc"
