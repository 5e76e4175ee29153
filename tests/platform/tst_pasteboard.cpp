// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pasteboard.h"
#include "tests/ui/display/private_display.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <ctime>

using veltro::DesktopPasteboard;
using veltro::Pasteboard;
using Use = Pasteboard::Use;

namespace {

constexpr int patience = 30'000;

double mainThreadSeconds()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
}

}

/// What other programs of a display hold in the clipboard.
class PasteboardTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void textsOfOthersAreReadWithinTheirLimit_data();
    void textsOfOthersAreReadWithinTheirLimit();
    void fiftyMegabytesHoldNobodyUp();
    void aProgramThatDoesNotAnswerHoldsNobodyUp();
    void whatIsMarkedIsNotWhatIsCopied();
    void ourOwnTextIsAtHand();
    void nothingIsToldToWhoIsGone();

private:
    /// Has a plain clipboard tool hold what the file has; it serves until its end.
    void holdWithTool(QProcess &tool, const QByteArray &content,
                      const QString &selection = QStringLiteral("clipboard"));
    [[nodiscard]] QByteArray
    readWithTool(const QString &selection = QStringLiteral("clipboard")) const;
    struct Answer {
        bool isGiven = false;
        std::optional<QString> text;
    };
    void read(Use use, Answer &answer);

    QTemporaryDir m_folder;
    DesktopPasteboard m_pasteboard;
};

void PasteboardTest::holdWithTool(QProcess &tool, const QByteArray &content,
                                  const QString &selection)
{
    const QString path = m_folder.filePath(QStringLiteral("held"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    file.close();
    tool.start(QStringLiteral("xclip"), {QStringLiteral("-selection"), selection,
                                         QStringLiteral("-quiet"), QStringLiteral("-i"), path});
    QVERIFY(tool.waitForStarted());
    QTRY_COMPARE_WITH_TIMEOUT(readWithTool(selection).size(), content.size(), patience);
}

QByteArray PasteboardTest::readWithTool(const QString &selection) const
{
    QProcess tool;
    tool.start(QStringLiteral("xclip"),
               {QStringLiteral("-selection"), selection, QStringLiteral("-o")});
    const bool isDone =
        QTest::qWaitFor([&] { return tool.state() == QProcess::NotRunning; }, patience);
    return isDone ? tool.readAllStandardOutput() : QByteArray();
}

void PasteboardTest::read(Use use, Answer &answer)
{
    m_pasteboard.read(use, this, [&answer](const std::optional<QString> &text) {
        answer.isGiven = true;
        answer.text = text;
    });
}

void PasteboardTest::textsOfOthersAreReadWithinTheirLimit_data()
{
    QTest::addColumn<QByteArray>("held");
    QTest::addColumn<bool>("isLink");
    QTest::addColumn<bool>("isLinks");
    QTest::newRow("an address") << QByteArray("https://a.example/1\n") << true << true;
    QTest::newRow("beyond ASCII") << QByteArray("https://пример.example/é") << true << true;
    QTest::newRow("a long one") << QByteArray(64 * 1024, 'x') << true << true;
    QTest::newRow("too long for one") << QByteArray(200 * 1024, 'x') << false << true;
    QTest::newRow("in pieces") << QByteArray(1'000'000, 'x') << false << true;
    QTest::newRow("too long for many") << QByteArray(3'000'001, 'x') << false << false;
}

void PasteboardTest::textsOfOthersAreReadWithinTheirLimit()
{
    QFETCH(QByteArray, held);
    QFETCH(bool, isLink);
    QFETCH(bool, isLinks);
    QProcess tool;
    holdWithTool(tool, held);
    for (const auto &[use, isGiven] :
         {std::pair(Use::link, isLink), std::pair(Use::links, isLinks)}) {
        Answer answer;
        read(use, answer);
        QTRY_VERIFY_WITH_TIMEOUT(answer.isGiven, patience);
        QCOMPARE(answer.text.has_value(), isGiven);
        QVERIFY(!isGiven || answer.text->toUtf8() == held);
    }
    // It was left able to serve others.
    QCOMPARE(readWithTool().size(), held.size());
    tool.terminate();
    tool.waitForFinished();
}

void PasteboardTest::fiftyMegabytesHoldNobodyUp()
{
    const veltro::OtherProgram other({QStringLiteral("copy"), QStringLiteral("50000000")});
    for (const Use use : {Use::link, Use::links}) {
        Answer answer;
        const double before = mainThreadSeconds();
        read(use, answer);
        QVERIFY(!answer.isGiven);
        QTRY_VERIFY_WITH_TIMEOUT(answer.isGiven, patience);
        QVERIFY(!answer.text);
        // Two frames at the most, of all the time that it took.
        QVERIFY(mainThreadSeconds() - before < 0.033);
    }
}

void PasteboardTest::aProgramThatDoesNotAnswerHoldsNobodyUp()
{
    QProcess tool;
    holdWithTool(tool, "https://a.example/");
    ::kill(pid_t(tool.processId()), SIGSTOP);
    Answer answer;
    const double before = mainThreadSeconds();
    read(Use::link, answer);
    QTRY_VERIFY_WITH_TIMEOUT(answer.isGiven, patience);
    QVERIFY(!answer.text);
    QVERIFY(mainThreadSeconds() - before < 0.033);
    ::kill(pid_t(tool.processId()), SIGCONT);
    tool.terminate();
    tool.waitForFinished();
}

void PasteboardTest::whatIsMarkedIsNotWhatIsCopied()
{
    QProcess copying;
    QProcess marking;
    holdWithTool(copying, "copied");
    holdWithTool(marking, "marked", QStringLiteral("primary"));
    for (const auto &[use, text] : {std::pair(Use::link, QStringLiteral("copied")),
                                    std::pair(Use::marked, QStringLiteral("marked"))}) {
        Answer answer;
        read(use, answer);
        QTRY_VERIFY_WITH_TIMEOUT(answer.isGiven, patience);
        QCOMPARE(answer.text, text);
    }
    for (QProcess *tool : {&copying, &marking}) {
        tool->terminate();
        tool->waitForFinished();
    }
}

void PasteboardTest::ourOwnTextIsAtHand()
{
    const QSignalSpy changed(&m_pasteboard, &Pasteboard::changed);
    m_pasteboard.setText(QStringLiteral("https://a.example/own"));
    Answer answer;
    read(Use::link, answer);
    QVERIFY(answer.isGiven);
    QCOMPARE(answer.text, QStringLiteral("https://a.example/own"));
    QCOMPARE(m_pasteboard.text(), answer.text);
    QVERIFY(changed.size() >= 1);

    QGuiApplication::clipboard()->setText(QString(50'000'000, QChar(u'x')));
    QVERIFY(!m_pasteboard.text());
    auto *const picture = new QMimeData; // the clipboard's from here on
    picture->setData(QStringLiteral("image/png"), "no text");
    QGuiApplication::clipboard()->setMimeData(picture);
    QVERIFY(!m_pasteboard.text());
}

void PasteboardTest::nothingIsToldToWhoIsGone()
{
    QProcess tool;
    holdWithTool(tool, "https://a.example/");
    auto *asking = new QObject(this);
    bool isTold = false;
    m_pasteboard.read(Use::link, asking, [&](const std::optional<QString> &) { isTold = true; });
    delete asking;
    Answer later;
    read(Use::link, later);
    QTRY_VERIFY_WITH_TIMEOUT(later.isGiven, patience);
    QVERIFY(!isTold);
    tool.terminate();
    tool.waitForFinished();
}

int main(int argc, char **argv)
{
    const veltro::PrivateDisplay display;
    const QGuiApplication application(argc, argv);
    PasteboardTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_pasteboard.moc"
