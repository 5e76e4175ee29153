// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/ui/samples/sample_request.h"
#include "tests/ui/screens/screen_under_test.h"
#include "ui/picker/format_picker.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace veltro {
namespace {

constexpr auto screenFile = "qrc:/qt/qml/Veltro/Picker/FormatPickerContent.qml";

struct Content {
    explicit Content(SampleRequest::Page page)
        : screen(screenFile, {{u"picker"_s, QVariant::fromValue(asked(picker, page))}})
    {}

    static FormatPicker *asked(FormatPicker &picker, SampleRequest::Page page)
    {
        SampleRequest sample;
        sample.page = page;
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
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void aSectionIsChosenAndARowPicked();
    void aRowIsPickedByKey();
    void entriesOfAListAreSavedOneOrAll();
};

void TestPickerContent::aSectionIsChosenAndARowPicked()
{
    Content content(SampleRequest::Mixed);
    QSignalSpy picked(&content.picker, &FormatPicker::picked);
    content.screen.click(content.screen.withText("Audio"));
    QCOMPARE(content.picker.section(), FormatPicker::Audio);
    QTRY_VERIFY(content.screen.withText("M4A"));
    content.screen.click(content.screen.withText("M4A"));
    QCOMPARE(picked.size(), 1);
    QCOMPARE(picked[0][1].value<Format>().id, u"mp4a.40.2"_s);
}

void TestPickerContent::aRowIsPickedByKey()
{
    Content content(SampleRequest::Mixed);
    QSignalSpy picked(&content.picker, &FormatPicker::picked);
    content.screen.named("formats")->forceActiveFocus();
    QTest::keyClick(content.screen.window(), Qt::Key_Down);
    QTest::keyClick(content.screen.window(), Qt::Key_Return);
    QCOMPARE(picked.size(), 1);
    QCOMPARE(picked[0][1].value<Format>().id, u"240"_s);
}

void TestPickerContent::entriesOfAListAreSavedOneOrAll()
{
    Content content(SampleRequest::Playlist);
    QSignalSpy saved(&content.picker, &FormatPicker::entriesPicked);
    content.screen.click(content.screen.withText("Save all 40 entries"));
    QCOMPARE(saved.takeFirst()[0].toString().count(u'\n'), 39);
    content.screen.named("entries")->forceActiveFocus();
    QTest::keyClick(content.screen.window(), Qt::Key_Return);
    QCOMPARE(saved.takeFirst()[0].toString(), u"https://video.example/0"_s);
}

}

QTEST_MAIN(veltro::TestPickerContent)
#include "tst_picker_content.moc"
