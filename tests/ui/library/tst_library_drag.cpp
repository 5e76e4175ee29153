// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/ui/display/private_display.h"
#include "tests/ui/library/library_screen_test.h"

#include <QGuiApplication>
#include <QThread>

using namespace Qt::StringLiterals;
using namespace veltro;

/// Tiles dragged by a pointer out of the window, onto another program.
class LibraryDragTest : public LibraryScreenTest {
    Q_OBJECT
public:
    explicit LibraryDragTest(const PrivateDisplay &display) : m_display(display) {}

private Q_SLOTS:
    void aTileGivesItsFileAndTheChoiceAllOfTheirs();
    void aTileWithoutAFileGivesNothing();

private:
    [[nodiscard]] QPoint onDisplay(const QString &title) const
    {
        return window()->mapToGlobal(middle(tile(title)));
    }
    /// Has a hand do that while the program goes on: a drag keeps the main thread to itself.
    static bool byHand(const std::function<void()> &movement);
    /// Drags the tile onto another program; the files that it is given.
    QList<QUrl> dragOut(const QString &title);

    const PrivateDisplay &m_display;
};

bool LibraryDragTest::byHand(const std::function<void()> &movement)
{
    const std::unique_ptr<QThread> hand(QThread::create(movement));
    hand->start();
    return QTest::qWaitFor([&] { return hand->isFinished(); }, 4 * patience);
}

QList<QUrl> LibraryDragTest::dragOut(const QString &title)
{
    QByteArray lines;
    const bool isDone = byHand([&, start = onDisplay(title)] {
        OtherProgram other({u"drop"_s, u"1200"_s, u"300"_s});
        m_display.movePointer(start);
        m_display.press();
        m_display.movePointer(start + QPoint(30, 20));
        m_display.movePointer({1275, 375});
        other.next("entered");
        m_display.release();
        lines = QByteArray::fromHex(other.next("dropped"));
    });
    QList<QUrl> files;
    const QList<QByteArray> addresses = isDone ? lines.split('\n') : QList<QByteArray>();
    for (const QByteArray &address : addresses) {
        if (!address.trimmed().isEmpty()) {
            files.append(QUrl::fromEncoded(address.trimmed(), QUrl::StrictMode));
        }
    }
    return files;
}

void LibraryDragTest::aTileGivesItsFileAndTheChoiceAllOfTheirs()
{
    // A name that an address has to encode.
    DownloadItem one = film(u"one"_s);
    const QString odd = m_library->path(u"100 % été #1.mp4"_s);
    QVERIFY(QFile::rename(one.localFileURL->toLocalFile(), odd));
    one.localFileURL = QUrl::fromLocalFile(odd);
    const DownloadItem two = film(u"two"_s);
    m_library->save({one, two, m_library->item(u"three"_s)});
    show();
    window()->setPosition(40, 40);
    QTRY_VERIFY(tile(u"three"_s));

    QCOMPARE(dragOut(u"one"_s), QList<QUrl>{*one.localFileURL});
    QVERIFY(QFile::exists(odd));
    QVERIFY(chosen().isEmpty());

    // A drag leaves nothing behind that keeps the next click from being one.
    m_display.movePointer(onDisplay(u"two"_s));
    m_display.act({u"click"_s, u"1"_s});
    QTRY_COMPARE(chosen(), QStringList{u"two"_s});

    // A tile of the choice takes the others along, in their order.
    click(u"one"_s, Qt::ControlModifier);
    QCOMPARE(dragOut(u"two"_s), (QList<QUrl>{*one.localFileURL, *two.localFileURL}));
    QCOMPARE(m_library->storedTitles(), (QStringList{u"one"_s, u"three"_s, u"two"_s}));
}

void LibraryDragTest::aTileWithoutAFileGivesNothing()
{
    saveTitles({u"bare"_s});
    show();
    window()->setPosition(40, 40);
    QTRY_VERIFY(tile(u"bare"_s));
    QVERIFY(byHand([&, start = onDisplay(u"bare"_s)] {
        m_display.movePointer(start);
        m_display.press();
        m_display.movePointer(start + QPoint(30, 20));
        m_display.release();
    }));
    QTRY_COMPARE(chosen(), QStringList{u"bare"_s});
}

int main(int argc, char **argv)
{
    const PrivateDisplay display;
    const QGuiApplication application(argc, argv);
    LibraryDragTest test(display);
    return QTest::qExec(&test, argc, argv);
}

#include "tst_library_drag.moc"
