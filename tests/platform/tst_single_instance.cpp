// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/platform/private_bus.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace veltro;

namespace {

const QString wrapped = QStringLiteral("veltro://open?url=https%3A%2F%2Fsite.example%2Fa%3Fb%3D1");
const QString page = QStringLiteral("https://site.example/a?b=1");

/// One start of the program, as a process.
class Start {
public:
    explicit Start(const QProcessEnvironment &environment, const QStringList &links = {})
    {
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/instance-probe"),
                      links);
    }
    ~Start()
    {
        process.closeWriteChannel();
        if (!process.waitForFinished()) {
            process.kill();
            process.waitForFinished();
        }
    }
    void setReady() { process.write("ready\n"); }
    /// The next line that it says.
    QString line()
    {
        return QTest::qWaitFor([&] { return process.canReadLine(); }, 30'000)
                   ? QString::fromUtf8(process.readLine()).trimmed()
                   : QStringLiteral("(nothing)");
    }
    QProcess process;
};

}

/// Whole processes, with a session bus and without one.
class TestSingleInstance : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void aSecondStartHandsItsLinksOverAndLeaves_data() { withAndWithoutBus(); }
    void aSecondStartHandsItsLinksOverAndLeaves();
    void whatComesBeforeTheWindowIsReadyIsKept_data() { withAndWithoutBus(); }
    void whatComesBeforeTheWindowIsReadyIsKept();
    void startsAtTheSameMomentMakeOneProcess_data() { withAndWithoutBus(); }
    void startsAtTheSameMomentMakeOneProcess();
    void afterTheFirstEndedTheNextIsTheFirst_data() { withAndWithoutBus(); }
    void afterTheFirstEndedTheNextIsTheFirst();
    void theDesktopCallsItAsAnApplication();
    void aFolderThatTakesNoFilesStopsNoStart();

private:
    static void withAndWithoutBus();
    [[nodiscard]] QProcessEnvironment environment(bool hasBus) const;
    std::unique_ptr<PrivateBus> m_bus;
    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestSingleInstance::withAndWithoutBus()
{
    QTest::addColumn<bool>("hasBus");
    QTest::newRow("with a session bus") << true;
    QTest::newRow("without one") << false;
}

void TestSingleInstance::initTestCase()
{
    m_bus = std::make_unique<PrivateBus>();
    QVERIFY(m_bus->start());
}

void TestSingleInstance::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

QProcessEnvironment TestSingleInstance::environment(bool hasBus) const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    if (!hasBus) {
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                           QStringLiteral("unix:path=/nowhere/bus"));
    }
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_folder->path());
    environment.insert(QStringLiteral("XDG_DATA_HOME"), m_folder->path());
    environment.remove(QStringLiteral("XDG_ACTIVATION_TOKEN"));
    environment.remove(QStringLiteral("DESKTOP_STARTUP_ID"));
    return environment;
}

void TestSingleInstance::aSecondStartHandsItsLinksOverAndLeaves()
{
    QFETCH(const bool, hasBus);
    Start first(environment(hasBus), {QStringLiteral("http://own.example/")});
    QCOMPARE(first.line(), QStringLiteral("first"));
    first.setReady();
    QCOMPARE(first.line(), QStringLiteral("link veltro://open?url=http%3A%2F%2Fown.example%2F"));

    QProcessEnvironment withToken = environment(hasBus);
    withToken.insert(QStringLiteral("XDG_ACTIVATION_TOKEN"), QStringLiteral("token-1"));
    Start second(withToken, {page, QStringLiteral("no link"),
                             QStringLiteral("veltro://item/6a1f0c5e-4e3c-4c8e-9d4e-0b8f6f6d2a11")});
    QCOMPARE(second.line(), QStringLiteral("handed over"));
    QTRY_COMPARE(second.process.state(), QProcess::NotRunning);
    QCOMPARE(first.line(), QStringLiteral("activated token-1"));
    QCOMPARE(first.line(), QStringLiteral("link ") + wrapped);
    QCOMPARE(first.line(), QStringLiteral("item 6a1f0c5e-4e3c-4c8e-9d4e-0b8f6f6d2a11"));

    Start third(environment(hasBus));
    QCOMPARE(third.line(), QStringLiteral("handed over"));
    QCOMPARE(first.line(), QStringLiteral("activated"));
}

void TestSingleInstance::whatComesBeforeTheWindowIsReadyIsKept()
{
    QFETCH(const bool, hasBus);
    Start first(environment(hasBus));
    QCOMPARE(first.line(), QStringLiteral("first"));
    for (const char *const number : {"1", "2"}) {
        Start later(environment(hasBus), {QStringLiteral("http://a/") + QLatin1String(number)});
        QCOMPARE(later.line(), QStringLiteral("handed over"));
    }
    QVERIFY(!first.process.canReadLine());
    first.setReady();
    QCOMPARE(first.line(), QStringLiteral("activated"));
    QCOMPARE(first.line(), QStringLiteral("link veltro://open?url=http%3A%2F%2Fa%2F1"));
    QCOMPARE(first.line(), QStringLiteral("activated"));
    QCOMPARE(first.line(), QStringLiteral("link veltro://open?url=http%3A%2F%2Fa%2F2"));
}

void TestSingleInstance::startsAtTheSameMomentMakeOneProcess()
{
    QFETCH(const bool, hasBus);
    constexpr int starts = 5;
    std::vector<std::unique_ptr<Start>> all;
    for (int i = 0; i < starts; ++i) {
        all.push_back(std::make_unique<Start>(environment(hasBus),
                                              QStringList(QStringLiteral("http://a/%1").arg(i))));
    }
    Start *first = nullptr;
    int handedOver = 0;
    for (const auto &start : all) {
        const QString said = start->line();
        if (said == QLatin1String("first")) {
            QVERIFY(!first);
            first = start.get();
        } else {
            QCOMPARE(said, QStringLiteral("handed over"));
            ++handedOver;
        }
    }
    QCOMPARE(handedOver, starts - 1);
    QVERIFY(first);
    first->setReady();
    QStringList links;
    while (links.size() < starts) {
        const QString said = first->line();
        QVERIFY2(said != QLatin1String("(nothing)"), "a link was lost");
        if (said.startsWith(QLatin1String("link "))) {
            links += said;
        }
    }
    links.removeDuplicates();
    QCOMPARE(links.size(), starts);
}

void TestSingleInstance::afterTheFirstEndedTheNextIsTheFirst()
{
    QFETCH(const bool, hasBus);
    {
        Start first(environment(hasBus));
        QCOMPARE(first.line(), QStringLiteral("first"));
        first.process.kill(); // as a crash leaves it
        QVERIFY(first.process.waitForFinished());
    }
    Start next(environment(hasBus));
    QCOMPARE(next.line(), QStringLiteral("first"));
    Start later(environment(hasBus));
    QCOMPARE(later.line(), QStringLiteral("handed over"));
}

void TestSingleInstance::theDesktopCallsItAsAnApplication()
{
    Start first(environment(true));
    QCOMPARE(first.line(), QStringLiteral("first"));
    first.setReady();
    // As the desktop's own tools call it.
    const auto call = [&](const QStringList &arguments) {
        QProcess gdbus;
        gdbus.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        gdbus.start(QStringLiteral("gdbus"),
                    QStringList{QStringLiteral("call"), QStringLiteral("--session"),
                                QStringLiteral("--dest"), QStringLiteral("app.veltro.app"),
                                QStringLiteral("--object-path"), QStringLiteral("/app/veltro/app"),
                                QStringLiteral("--method")} +
                        arguments);
        return gdbus.waitForFinished() && gdbus.exitCode() == 0;
    };
    QVERIFY(call({QStringLiteral("org.freedesktop.Application.Activate"),
                  QStringLiteral("{'activation-token': <'t1'>}")}));
    QCOMPARE(first.line(), QStringLiteral("activated t1"));
    QVERIFY(call({QStringLiteral("org.freedesktop.Application.Open"),
                  QStringLiteral("['%1']").arg(wrapped),
                  QStringLiteral("{'desktop-startup-id': <'t2'>}")}));
    QCOMPARE(first.line(), QStringLiteral("activated t2"));
    QCOMPARE(first.line(), QStringLiteral("link ") + wrapped);
    QVERIFY(
        call({QStringLiteral("org.freedesktop.Application.ActivateAction"),
              QStringLiteral("search"), QStringLiteral("[<'two words'>]"), QStringLiteral("{}")}));
    QCOMPARE(first.line(), QStringLiteral("activated"));
    QCOMPARE(first.line(), QStringLiteral("search two words"));
}

void TestSingleInstance::aFolderThatTakesNoFilesStopsNoStart()
{
    QProcessEnvironment nowhere = environment(false);
    nowhere.insert(QStringLiteral("XDG_RUNTIME_DIR"), QStringLiteral("/proc/nowhere"));
    nowhere.insert(QStringLiteral("XDG_DATA_HOME"), QStringLiteral("/proc/nowhere"));
    Start start(nowhere, {page});
    QCOMPARE(start.line(), QStringLiteral("first"));
    start.setReady();
    QCOMPARE(start.line(), QStringLiteral("link ") + wrapped);
}

QTEST_GUILESS_MAIN(TestSingleInstance)
#include "tst_single_instance.moc"
