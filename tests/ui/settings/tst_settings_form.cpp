// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/ui/samples/sample_sites.h"
#include "tests/ui/screens/screen_under_test.h"
#include "ui/settings/about_information.h"
#include "ui/settings/settings_model.h"

#include <QAccessible>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

#include <string_view>

using namespace Qt::StringLiterals;

namespace veltro {
namespace {

constexpr auto screenFile = "qrc:/qt/qml/Veltro/Settings/SettingsForm.qml";

/// The form over a record that nothing keeps.
struct Form {
    explicit Form(QAbstractItemModel *sites = nullptr)
        : screen(screenFile, {{u"settings"_s, QVariant::fromValue(&settings)},
                              {u"sites"_s, QVariant::fromValue<QObject *>(sites)},
                              {u"about"_s, QVariant::fromValue(&about)}})
    {
        QObject::connect(&settings, &SettingsModel::edited, &settings,
                         [this](const Preferences &wanted) { settings.setPreferences(wanted); });
        settings.setPreferences({});
        screen.resize({700, 1600});
    }

    static BundleInformation withTwoPages()
    {
        BundleInformation information;
        information.supportPage = QUrl(u"https://product.example/support"_s);
        information.noticesPage = QUrl(u"https://product.example/notices"_s);
        return information;
    }

    SettingsModel settings{[](const Preferences &) {}};
    AboutInformation about{withTwoPages()};
    ScreenUnderTest screen;
};

}

class TestSettingsForm : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void aToggleShowsTheRecordAndChangesIt();
    void aChoiceIsPickedByKey();
    void whatIsTypedAsLanguagesStaysUntilTheFieldIsLeft();
    void aSiteIsRemovedByItsButton();
    void onlyPagesThatThereAreCanBeOpened();
};

void TestSettingsForm::aToggleShowsTheRecordAndChangesIt()
{
    Form form;
    QQuickItem *toggle = form.screen.withText("Wi-Fi only");
    const auto isChecked = [&] {
        return QAccessible::queryAccessibleInterface(toggle)->state().checked == 1;
    };
    QVERIFY(isChecked());
    form.screen.click(toggle);
    QCOMPARE(form.settings.wifiOnly(), false);
    QVERIFY(!isChecked());
    form.settings.setWifiOnly(true);
    QVERIFY(isChecked());
}

void TestSettingsForm::aChoiceIsPickedByKey()
{
    Form form;
    const auto isMeant = [](const QQuickItem &item) {
        return item.property("name") == u"Quality"_s;
    };
    QQuickItem *box = form.screen.items(isMeant).value(0);
    QVERIFY(box);
    QCOMPARE(box->property("displayText").toString(), u"Best"_s);
    box->forceActiveFocus();
    QTest::keyClick(form.screen.window(), Qt::Key_Down);
    QCOMPARE(form.settings.quality(), 1);
    QCOMPARE(box->property("displayText").toString(), u"1080p"_s);
    // Another view of the same record.
    form.settings.setQuality(4);
    QCOMPARE(box->property("displayText").toString(), u"Audio only"_s);
}

void TestSettingsForm::whatIsTypedAsLanguagesStaysUntilTheFieldIsLeft()
{
    Form form;
    QQuickItem *field = form.screen.named("languages");
    QCOMPARE(field->property("text").toString(), u"en"_s);
    field->forceActiveFocus();
    for (const char key : std::string_view(",, nl ,")) {
        QTest::keyClick(form.screen.window(), key);
    }
    QCOMPARE(field->property("text").toString(), u"en,, nl ,"_s);
    QCOMPARE(form.settings.preferences().preferredSubtitleLanguages,
             (QStringList{u"en"_s, u"nl"_s}));
    QQuickItem *other = form.screen.named("outputTemplate");
    QCOMPARE(other->property("placeholderText"), u"%(title)s [%(id)s].%(ext)s"_s);
    QCOMPARE(other->property("text"), u"%(title)s [%(id)s].%(ext)s"_s);
    other->forceActiveFocus();
    QCOMPARE(field->property("text").toString(), u"en, nl"_s);
}

void TestSettingsForm::aSiteIsRemovedByItsButton()
{
    SampleSites sites;
    Form form(&sites);
    QVERIFY(!form.screen.named("noSites")->isVisible());
    QSignalSpy removed(form.screen.root(), form.screen.signalNamed("siteRemoved"));
    form.screen.click(form.screen.withText("Remove films.example"));
    QCOMPARE(removed.size(), 1);
    QCOMPARE(removed[0][0].toString(), u"films.example"_s);
}

void TestSettingsForm::onlyPagesThatThereAreCanBeOpened()
{
    const Form form;
    QVERIFY(!form.screen.withText("Privacy policy"));
    QSignalSpy asked(form.screen.root(), form.screen.signalNamed("pageRequested"));
    form.screen.click(form.screen.withText("Open-source notices"));
    QCOMPARE(asked.size(), 1);
    QCOMPARE(asked[0][0].toUrl(), form.about.noticesPage());
}

}

QTEST_MAIN(veltro::TestSettingsForm)
#include "tst_settings_form.moc"
