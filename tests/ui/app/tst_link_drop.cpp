// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// Links, and what is none, dragged by a pointer from another program onto the window.
#include "tests/ui/app/window_bench.h"
#include "tests/ui/display/private_display.h"

#include <QBuffer>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace veltro {

class TestLinkDrop : public QObject {
    Q_OBJECT
public:
    explicit TestLinkDrop(const PrivateDisplay &display) : m_display(display) {}

private Q_SLOTS:
    void init();
    void cleanup();
    void aLinkIsSubmittedOnce_data();
    void aLinkIsSubmittedOnce();
    void whatIsNoLinkIsRefused_data();
    void whatIsNoLinkIsRefused();

private:
    /// Drags that content from another program to the middle of the window; what became of it
    /// there: "taken" or "refused".
    QByteArray drag(const QByteArray &type, const QByteArray &content);

    const PrivateDisplay &m_display;
    std::unique_ptr<WindowBench> m_bench;
};

void TestLinkDrop::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    m_bench = std::make_unique<WindowBench>();
    QVERIFY(QTest::qWaitForWindowActive(&m_bench->window()));
    m_bench->window().setPosition(40, 60);
}

void TestLinkDrop::cleanup()
{
    m_bench.reset();
}

QByteArray TestLinkDrop::drag(const QByteArray &type, const QByteArray &content)
{
    m_bench->home.write(u"dragged"_s, content);
    OtherProgram other({u"drag"_s, u"1200"_s, u"300"_s,
                        QString::fromLatin1(type) + u'=' + m_bench->home.path(u"dragged"_s)});
    m_display.movePointer({1275, 375});
    m_display.press();
    m_display.movePointer({1230, 330});
    other.next("dragging");
    m_display.movePointer(middleOf(m_bench->window()));
    m_display.release();
    return other.next(QByteArray());
}

void TestLinkDrop::aLinkIsSubmittedOnce_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::newRow("an address") << QByteArray("text/uri-list") << QByteArray()
                                << QByteArray("\r\n");
    QTest::newRow("an address after a comment and a file")
        << QByteArray("text/uri-list") << QByteArray("# of a page\r\nfile:///etc/hostname\r\n")
        << QByteArray("\r\n");
    QTest::newRow("a text") << QByteArray("text/plain") << QByteArray(" ") << QByteArray("\n");
}

void TestLinkDrop::aLinkIsSubmittedOnce()
{
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    const QString path = u"/plain"_s;
    QCOMPARE(drag(type, before + m_bench->site.url(path).toEncoded() + after), QByteArray("taken"));
    QTRY_VERIFY_WITH_TIMEOUT(m_bench->store().hasPendingFormatPick(), CoordinatorBench::patience);
    QTRY_VERIFY(m_bench->popup(u"formatPicker"_s).property("opened").toBool());
    QCOMPARE(m_bench->site.requestCount(path), 1);
    m_bench->store().clearPendingFormatPick();
}

void TestLinkDrop::whatIsNoLinkIsRefused_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("content");
    QByteArray picture;
    QBuffer buffer(&picture);
    buffer.open(QIODevice::WriteOnly);
    QVERIFY(QImage(QSize(64, 64), QImage::Format_RGB32).save(&buffer, "PNG"));
    QTest::newRow("files") << QByteArray("text/uri-list")
                           << QByteArray("file:///etc/hostname\r\nfile:///etc/hosts\r\n");
    QTest::newRow("a picture") << QByteArray("image/png") << picture;
    QTest::newRow("words") << QByteArray("text/plain") << QByteArray("see example.org for more");
    QTest::newRow("a page's piece")
        << QByteArray("text/html") << QByteArray("<a href='http://127.0.0.1:9/'>link</a>");
    QTest::newRow("nothing") << QByteArray("text/plain") << QByteArray();
}

void TestLinkDrop::whatIsNoLinkIsRefused()
{
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, content);
    QCOMPARE(drag(type, content), QByteArray("refused"));
    QVERIFY(m_bench->site.log().isEmpty());
    QVERIFY(!m_bench->store().hasPendingFormatPick());
    QVERIFY(!m_bench->store().showEngineError());
    QVERIFY(!m_bench->engine.hasRuns());
}

}

int main(int argc, char **argv)
{
    const veltro::PrivateDisplay display;
    const QGuiApplication application(argc, argv);
    veltro::TestLinkDrop test(display);
    return QTest::qExec(&test, argc, argv);
}

#include "tst_link_drop.moc"
