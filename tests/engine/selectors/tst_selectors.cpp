// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/selectors/format_selector.h"
#include "engine/selectors/quality_tier.h"
#include "tests/rows.h"

#include <QTest>

using namespace veltro;
using test::row;

namespace {

const QString audioSelector = QStringLiteral("bestaudio[ext=m4a]/bestaudio");

QString capped(int height)
{
    return QStringLiteral("bestvideo[height<=%1]+bestaudio/best[height<=%1]").arg(height);
}

QString cappedH264(int height)
{
    return QStringLiteral("bestvideo[vcodec~='^(avc1|h264)'][height<=%1]+bestaudio[ext=m4a]"
                          "/bestvideo*[height<=%1]+bestaudio/best[height<=%1]/best")
        .arg(height);
}

}

class TestSelectors : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void aTierAndItsSelectorFindEachOther();
    void anUnknownSelectorIsShownAs1080p_data();
    void anUnknownSelectorIsShownAs1080p();
    void theSettingsOfferWhatTheTiersMeanButNo4K();
    void aPickedPictureBringsSoundAlong();
    void h264ComesFirstWhereAQualityIsAsked_data();
    void h264ComesFirstWhereAQualityIsAsked();
};

void TestSelectors::aTierAndItsSelectorFindEachOther()
{
    const QStringList labels{QStringLiteral("4K"), QStringLiteral("1080p"), QStringLiteral("720p"),
                             QStringLiteral("480p"), QStringLiteral("Audio")};
    const QStringList selectors{capped(2160), capped(1080), capped(720), capped(480),
                                audioSelector};
    for (std::size_t i = 0; i < qualityTiers.size(); ++i) {
        QCOMPARE(label(qualityTiers[i]), labels[int(i)]);
        QCOMPARE(selector(qualityTiers[i]), selectors[int(i)]);
        QCOMPARE(qualityTierForSelector(selectors[int(i)]), qualityTiers[i]);
    }
    QVERIFY(isAudioOnlySelector(audioSelector));
    QVERIFY(!isAudioOnlySelector(capped(720)));
    QVERIFY(!isAudioOnlySelector(QStringLiteral("best")));
}

void TestSelectors::anUnknownSelectorIsShownAs1080p_data()
{
    QTest::addColumn<QString>("text");
    row("the default preference", "best");
    row("nothing", "");
    row("another case", capped(480).toUpper());
    row("a tier with something behind it", capped(480) + u' ');
}

void TestSelectors::anUnknownSelectorIsShownAs1080p()
{
    QFETCH(QString, text);
    QCOMPARE(qualityTierForSelector(text), QualityTier::p1080);
}

void TestSelectors::theSettingsOfferWhatTheTiersMeanButNo4K()
{
    const std::vector<DefaultFormatChoice> expected{
        {QStringLiteral("Best"), QStringLiteral("best")},
        {QStringLiteral("1080p"), capped(1080)},
        {QStringLiteral("720p"), capped(720)},
        {QStringLiteral("480p"), capped(480)},
        {QStringLiteral("Audio only"), audioSelector},
    };
    QCOMPARE(defaultFormatChoices(), expected);
}

void TestSelectors::aPickedPictureBringsSoundAlong()
{
    Format format;
    format.id = QStringLiteral("137");
    QCOMPARE(selectorForPickedFormat(format), QStringLiteral("137"));
    format.isVideoOnly = true;
    const QString chain = selectorForPickedFormat(format);
    QCOMPARE(chain,
             QStringLiteral("137+bestaudio[acodec^=mp4a]/137+bestaudio/137/best[ext=mp4]/best"));
    QCOMPARE(preferH264Selector(chain), chain); // the user's pick is not second-guessed
}

void TestSelectors::h264ComesFirstWhereAQualityIsAsked_data()
{
    QTest::addColumn<QString>("asked");
    QTest::addColumn<QString>("sent");
    row("best", "best",
        "bestvideo[vcodec~='^(avc1|h264)']+bestaudio[ext=m4a]"
        "/bestvideo*+bestaudio/best");
    row("4K", capped(2160), cappedH264(2160));
    row("480p", capped(480), cappedH264(480));
    row("sound only", audioSelector, audioSelector);
    row("a bare format", "137", "137");
    row("no height", "bestvideo+bestaudio", "bestvideo+bestaudio");
    row("a height that never ends", "bestvideo[height<=720", "bestvideo[height<=720");
    row("an unusual height", "bestvideo[height<=333]", cappedH264(333));
}

void TestSelectors::h264ComesFirstWhereAQualityIsAsked()
{
    QFETCH(QString, asked);
    QFETCH(QString, sent);
    QCOMPARE(preferH264Selector(asked), sent);
}

QTEST_GUILESS_MAIN(TestSelectors)
#include "tst_selectors.moc"
