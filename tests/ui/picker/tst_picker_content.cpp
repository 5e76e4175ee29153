// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/ui/samples/sample_request.h"
#include "tests/ui/screens/screen_under_test.h"
#include "ui/picker/format_picker.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QTest>

namespace veltro {
namespace {

constexpr auto screenFile = "qrc:/qt/qml/Veltro/Picker/FormatPickerContent.qml";

struct Content {
    explicit Content(SampleRequest::Page page)
        : screen(screenFile, {{QStringLiteral("picker"), QVariant::fromValue(asked(picker, page))}})
    {}

    static FormatPicker *asked(FormatPicker &picker, SampleRequest::Page page)
    {
        SampleRequest sample;
        sample.setPage(page);
        picker.setRequest(sample.request());
        return &picker;
    }

    FormatPicker picker;
    ScreenUnderTest screen;
};

}

class TestPickerContent : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { ScreenUnderTest::prepare(); }
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void aSectionIsChosenAndARowPicked();
    void aRowIsPickedByKey();
    void anEmptySectionSaysWhyAndOffers();
    void entriesOfAListAreSavedOneOrAll();
    void aScreenReaderIsTold();
};

void TestPickerContent::aSectionIsChosenAndARowPicked()
{
    Content content(SampleRequest::Mixed);
    QSignalSpy picked(&content.picker, &FormatPicker::picked);
    content.screen.click(content.screen.withText("Audio"));
    QCOMPARE(content.picker.section(), FormatPicker::Audio);
    QTRY_VERIFY(content.screen.shows(QStringLiteral("M4A")));
    content.screen.click(content.screen.withText("M4A"));
    QCOMPARE(picked.size(), 1);
    QCOMPARE(picked[0][1].value<Format>().id, QStringLiteral("mp4a.40.2"));
}

void TestPickerContent::aRowIsPickedByKey()
{
    Content content(SampleRequest::Mixed);
    QSignalSpy picked(&content.picker, &FormatPicker::picked);
    content.screen.named("formats")->forceActiveFocus();
    QTest::keyClick(content.screen.window(), Qt::Key_Down);
    QTest::keyClick(content.screen.window(), Qt::Key_Return);
    QCOMPARE(picked.size(), 1);
    QCOMPARE(picked[0][1].value<Format>().id, QStringLiteral("240"));
}

void TestPickerContent::anEmptySectionSaysWhyAndOffers()
{
    Content content(SampleRequest::Formatless);
    QSignalSpy picked(&content.picker, &FormatPicker::picked);
    QVERIFY(content.screen.named("reason")->isVisible());
    content.screen.click(content.screen.named("offer"));
    QCOMPARE(picked.size(), 1);
}

void TestPickerContent::entriesOfAListAreSavedOneOrAll()
{
    Content content(SampleRequest::Playlist);
    QSignalSpy saved(&content.picker, &FormatPicker::entriesPicked);
    content.screen.click(content.screen.withText("Save all 40 entries"));
    QCOMPARE(saved.takeFirst()[0].toString().count(u'\n'), 39);
    content.screen.named("entries")->forceActiveFocus();
    QTest::keyClick(content.screen.window(), Qt::Key_Return);
    QCOMPARE(saved.takeFirst()[0].toString(), QStringLiteral("https://video.example/0"));
}

void TestPickerContent::aScreenReaderIsTold()
{
    const Content content(SampleRequest::Mixed);
    const auto name = [](QQuickItem *item) {
        return QAccessible::queryAccessibleInterface(item)->text(QAccessible::Name);
    };
    QCOMPARE(name(content.screen.withText("Video")), QStringLiteral("Video, 9"));
    QCOMPARE(name(content.screen.named("close")), QStringLiteral("Close"));
    QCOMPARE(QAccessible::queryAccessibleInterface(content.screen.named("formats"))->role(),
             QAccessible::List);
}

}

QTEST_MAIN(veltro::TestPickerContent)
#include "tst_picker_content.moc"
