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

namespace veltro {
namespace {

constexpr auto screenFile = "qrc:/qt/qml/Veltro/Settings/SettingsForm.qml";

/// The form over a record that nothing keeps.
struct Form {
    explicit Form(QAbstractItemModel *sites = nullptr)
        : screen(screenFile, {{QStringLiteral("settings"), QVariant::fromValue(&settings)},
                              {QStringLiteral("sites"), QVariant::fromValue<QObject *>(sites)},
                              {QStringLiteral("about"), QVariant::fromValue(&about)}})
    {
        QObject::connect(&settings, &SettingsModel::edited, &settings,
                         [this](const Preferences &wanted) { settings.setPreferences(wanted); });
        settings.setPreferences({});
        screen.resize({700, 1600});
    }

    static BundleInformation withTwoPages()
    {
        BundleInformation information;
        information.supportPage = QUrl(QStringLiteral("https://product.example/support"));
        information.noticesPage = QUrl(QStringLiteral("https://product.example/notices"));
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
    void initTestCase() { ScreenUnderTest::prepare(); }
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void everySectionAndControlHasItsText();
    void aToggleShowsTheRecordAndChangesIt();
    void aChoiceIsPickedByKey();
    void whatIsTypedAsLanguagesStaysUntilTheFieldIsLeft();
    void withoutSitesTheTextExplains();
    void aSiteIsRemovedByItsButton();
    void onlyPagesThatThereAreCanBeOpened();
};

void TestSettingsForm::everySectionAndControlHasItsText()
{
    const Form form;
    for (const char *text : {"Default quality",
                             "Quality",
                             "Extract audio by default",
                             "Audio format",
                             "Subtitles",
                             "Download subtitles",
                             "Languages (en, nl, es)",
                             "Output template",
                             "Network",
                             "Wi-Fi only",
                             "Logged-in sites",
                             "Veltro",
                             "Version",
                             "Engine",
                             "Embedded · on-device",
                             "Audio / video",
                             "Bundled toolkit",
                             "Storage",
                             "User Downloads folder",
                             "Support",
                             "Open-source notices"}) {
        QVERIFY2(form.screen.withText(text) != nullptr, text);
    }
    const QQuickItem *field = form.screen.named("outputTemplate");
    QCOMPARE(field->property("placeholderText").toString(),
             QStringLiteral("%(title)s [%(id)s].%(ext)s"));
    QCOMPARE(field->property("text").toString(), QStringLiteral("%(title)s [%(id)s].%(ext)s"));
}

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
    QQuickItem *box = form.screen.itemWhere([](const QQuickItem &item) {
        return item.property("name").toString() == QStringLiteral("Quality");
    });
    QVERIFY(box);
    QCOMPARE(box->property("displayText").toString(), QStringLiteral("Best"));
    box->forceActiveFocus();
    QTest::keyClick(form.screen.window(), Qt::Key_Down);
    QCOMPARE(form.settings.quality(), 1);
    QCOMPARE(box->property("displayText").toString(), QStringLiteral("1080p"));
    // Another view of the same record.
    form.settings.setQuality(4);
    QCOMPARE(box->property("displayText").toString(), QStringLiteral("Audio only"));
}

void TestSettingsForm::whatIsTypedAsLanguagesStaysUntilTheFieldIsLeft()
{
    Form form;
    QQuickItem *field = form.screen.named("languages");
    QCOMPARE(field->property("text").toString(), QStringLiteral("en"));
    field->forceActiveFocus();
    for (const char key : std::string_view(",, nl ,")) {
        QTest::keyClick(form.screen.window(), key);
    }
    QCOMPARE(field->property("text").toString(), QStringLiteral("en,, nl ,"));
    QCOMPARE(form.settings.preferences().preferredSubtitleLanguages,
             (QStringList{QStringLiteral("en"), QStringLiteral("nl")}));
    form.screen.named("outputTemplate")->forceActiveFocus();
    QCOMPARE(field->property("text").toString(), QStringLiteral("en, nl"));
}

void TestSettingsForm::withoutSitesTheTextExplains()
{
    const Form form;
    QVERIFY(form.screen.named("noSites")->isVisible());
    QVERIFY(form.screen.shows(QStringLiteral("Sign in to a site, then save its cookies so Veltro "
                                             "can reuse them. Saved sites will appear here.")));
}

void TestSettingsForm::aSiteIsRemovedByItsButton()
{
    SampleSites sites;
    Form form(&sites);
    QVERIFY(!form.screen.named("noSites")->isVisible());
    QSignalSpy removed(form.screen.root(), form.screen.signalNamed("siteRemoved"));
    form.screen.click(form.screen.withText("Remove films.example"));
    QCOMPARE(removed.size(), 1);
    QCOMPARE(removed[0][0].toString(), QStringLiteral("films.example"));
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
