// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/service/engine_error.h"
#include "engine/service/engine_messages.h"
#include "tests/rows.h"

#include <QTest>

#include <stdexcept>

using namespace veltro;
using test::row;

namespace {

const QString subscription = QStringLiteral(
    "This page isn't a video, or the site needs an active subscription to access it.");

}

class TestEngineMessages : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void aMessageIsShortenedToWhatAPersonNeeds_data();
    void aMessageIsShortenedToWhatAPersonNeeds();
    void protectedMediaIsRecognised_data();
    void protectedMediaIsRecognised();
    void anErrorSaysItsKindAndItsText();
};

void TestEngineMessages::aMessageIsShortenedToWhatAPersonNeeds_data()
{
    QTest::addColumn<QString>("raw");
    QTest::addColumn<QString>("clean");
    row("marker, extractor and identifier go", "ERROR: [site] abc123: Video unavailable",
        "Video unavailable");
    row("an unsupported address has a sentence of its own",
        "ERROR: Unsupported URL: http://127.0.0.1/x", subscription);
    row("whatever its case", "UNSUPPORTED url", subscription);
    row("a plain text stays", "  no marker ", "  no marker ");
    row("brackets the wrong way round stay", "a] b [c", "a] b [c");
    row("a marker in lower case is no marker", "error: [x] y: z", "z");
    row("only blanks are trimmed", "x ERROR: \t a\n", "a\n");
    row("no colon behind the bracket", "[x] plain", "plain");
    row("220 characters are whole", QString(220, u'x'), QString(220, u'x'));
    row("221 are cut", QString(221, u'x'), QString(220, u'x') + u'…');
    const QString family = QStringLiteral("👩‍👩‍👧");
    row("a character is what a person sees", family.repeated(220), family.repeated(220));
    row("and is not cut in two", family.repeated(221), family.repeated(220) + u'…');
}

void TestEngineMessages::aMessageIsShortenedToWhatAPersonNeeds()
{
    QFETCH(QString, raw);
    QFETCH(QString, clean);
    QCOMPARE(cleanEngineText(raw), clean);
}

void TestEngineMessages::protectedMediaIsRecognised_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isProtected");
    row("with a blank", "ERROR: [x] This video is DRM protected", true);
    row("with a hyphen", "drm-Protected stream", true);
    row("something else", "The DRM is gone", false);
}

void TestEngineMessages::protectedMediaIsRecognised()
{
    QFETCH(QString, text);
    QTEST(isDRMFailure(std::runtime_error(text.toStdString())), "isProtected");
}

void TestEngineMessages::anErrorSaysItsKindAndItsText()
{
    const QString why = QStringLiteral("why");
    QCOMPARE(EngineError::bootstrapFailed(why).description(),
             QStringLiteral("Engine could not start: why"));
    QCOMPARE(EngineError::probeFailed(why).description(),
             QStringLiteral("Could not read media info: why"));
    QCOMPARE(EngineError::downloadFailed(why).description(),
             QStringLiteral("Download failed: why"));
    QCOMPARE(EngineError::noFormats().description(),
             QStringLiteral("No downloadable formats were found."));
    QCOMPARE(EngineError::drmProtected().what(), "This video is DRM-protected and can't be saved.");
    QVERIFY(!(EngineError::probeFailed(why) == EngineError::downloadFailed(why)));
}

QTEST_GUILESS_MAIN(TestEngineMessages)
#include "tst_engine_messages.moc"
