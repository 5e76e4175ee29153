// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/engine/bridge/child_process.h"

using namespace veltro::test;

namespace {

const QString programName = QStringLiteral("runtime_case");

const QByteArray bothQueues(const QString &version)
{
    return "com.veltro.python.primary " + version.toLatin1() + "\ncom.veltro.python.probe " +
           version.toLatin1() + '\n';
}

/// Runs a case in a bundle without a framework folder.
ChildResult runPlain(const QString &name, const Variables &variables)
{
    const TemporaryBundle bundle(programName);
    return runChild(bundle.program(), {name}, variables);
}

void addEveryInterpreter()
{
    QTest::addColumn<QString>("library");
    QTest::addColumn<QString>("version");
    for (const MachineInterpreter &interpreter : machineInterpreters()) {
        QTest::newRow(qPrintable(interpreter.library))
            << interpreter.library << interpreter.version;
    }
}

Variables useLibrary(const QString &library)
{
    return {{QStringLiteral("PYTHON_LIBRARY"), library}};
}

} // namespace

class EnvironmentTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void frameworkFolderShapesTheSearchPath();
    void withoutAFrameworkFolderOnlyTheOtherVariablesAreSet_data() { addEveryInterpreter(); }
    void withoutAFrameworkFolderOnlyTheOtherVariablesAreSet();
    void certificatesOfTheBundleAreNamed();
    void unusableTemporaryFolderIsReplaced();
    void secondPreparationChangesNothing();
    void firstPreparationsAtOnceStartOneInterpreter_data() { addEveryInterpreter(); }
    void firstPreparationsAtOnceStartOneInterpreter();

    void failedStartCanBeRetried_data() { addEveryInterpreter(); }
    void failedStartCanBeRetried();
    void failedBootstrapCanBeRetried_data() { addEveryInterpreter(); }
    void failedBootstrapCanBeRetried();
    void damagedFrameworkFolderIsAnError();
    void hostileFileNameIsWrittenInACLocale_data() { addEveryInterpreter(); }
    void hostileFileNameIsWrittenInACLocale();
    void processLeavesMainCleanlyWhileJobsRun_data() { addEveryInterpreter(); }
    void processLeavesMainCleanlyWhileJobsRun();
};

void EnvironmentTest::frameworkFolderShapesTheSearchPath()
{
    const auto interpreters = machineInterpreters();
    const auto staged = std::find_if(interpreters.begin(), interpreters.end(),
                                     [](const auto &one) { return one.version == u"3.12"; });
    if (staged == interpreters.end()) {
        QSKIP("no shared Python 3.12 on this machine");
    }
    const TemporaryBundle bundle(programName);
    bundle.stage(staged->prefix);
    // Both are replaced, not extended, and so cannot do harm.
    const auto result = runChild(bundle.program(), {QStringLiteral("start")},
                                 {{QStringLiteral("PYTHONPATH"), QStringLiteral("/stale")},
                                  {QStringLiteral("PYTHONHOME"), QStringLiteral("/stale")}});
    VERIFY_TOLD(result.exitCode == 0 && result.output.endsWith(bothQueues(staged->version)),
                result);
    const QByteArray resources = (bundle.root() + QStringLiteral("/Contents/Resources")).toUtf8();
    const QByteArray home = bundle.frameworkHome().toUtf8();
    const QByteArrayList path{resources, home + "/lib/python3.12",
                              home + "/lib/python3.12/lib-dynload", resources + "/yt-dlp"};
    const QByteArrayList lines = result.output.split('\n');
    QCOMPARE(lines.value(0), "bootstrapped");
    QCOMPARE(lines.value(1), "PYTHONHOME=" + home);
    QCOMPARE(lines.value(2), "PYTHONPATH=" + path.join(':'));
    QVERIFY2(lines.value(9).startsWith("sys.path " + path.join(' ')), lines.value(9).constData());
}

void EnvironmentTest::withoutAFrameworkFolderOnlyTheOtherVariablesAreSet()
{
    QFETCH(QString, library);
    QFETCH(QString, version);
    const QTemporaryDir folder;
    const auto result =
        runPlain(QStringLiteral("start"),
                 useLibrary(library) +
                     Variables{{QStringLiteral("PYTHONIOENCODING"), QStringLiteral("ascii")},
                               {QStringLiteral("SSL_CERT_FILE"), QStringLiteral("/own/one")},
                               {QStringLiteral("REQUESTS_CA_BUNDLE"), QStringLiteral("/own/other")},
                               {QStringLiteral("TMPDIR"), folder.path()}});
    VERIFY_TOLD(result.output.startsWith("bootstrapped\n"
                                         "PYTHONHOME=(unset)\n"
                                         "PYTHONPATH=(unset)\n"
                                         "PYTHONIOENCODING=UTF-8\n"
                                         "PYTHONUNBUFFERED=1\n"
                                         "PYTHONDONTWRITEBYTECODE=1\n"
                                         "TMPDIR=" +
                                         folder.path().toUtf8() +
                                         "\nSSL_CERT_FILE=/own/one\n"
                                         "REQUESTS_CA_BUNDLE=/own/other\n"),
                result);
    VERIFY_TOLD(result.output.endsWith(bothQueues(version)), result);
}

void EnvironmentTest::certificatesOfTheBundleAreNamed()
{
    const TemporaryBundle bundle(programName);
    const QString certificates = bundle.root() + QStringLiteral("/Contents/Resources/cacert.pem");
    QFile file(certificates);
    QVERIFY(file.open(QFile::WriteOnly));
    const auto result = runChild(bundle.program(), {QStringLiteral("start")},
                                 {{QStringLiteral("SSL_CERT_FILE"), QStringLiteral("/own")}});
    VERIFY_TOLD(result.output.contains("SSL_CERT_FILE=" + certificates.toUtf8() +
                                       "\nREQUESTS_CA_BUNDLE=" + certificates.toUtf8() + '\n'),
                result);
}

void EnvironmentTest::unusableTemporaryFolderIsReplaced()
{
    for (const char *unusable : {"/nowhere", "relative", "/etc/passwd", ""}) {
        const auto result = runPlain(QStringLiteral("start"),
                                     {{QStringLiteral("TMPDIR"), QString::fromLatin1(unusable)}});
        VERIFY_TOLD(result.output.contains("TMPDIR=/tmp\n"), result);
    }
}

void EnvironmentTest::secondPreparationChangesNothing()
{
    const auto result = runPlain(QStringLiteral("prepare-twice"), {});
    VERIFY_TOLD(result.output == "bootstrapped\nbootstrapped\nlater later\n", result);
}

void EnvironmentTest::firstPreparationsAtOnceStartOneInterpreter()
{
    QFETCH(QString, library);
    QFETCH(QString, version);
    const auto result = runPlain(QStringLiteral("prepare-from-many-threads"), useLibrary(library));
    VERIFY_TOLD(result.output == bothQueues(version), result);
}

void EnvironmentTest::failedStartCanBeRetried()
{
    QFETCH(QString, library);
    QFETCH(QString, version);
    const auto result = runPlain(QStringLiteral("retry-after-a-wrong-home"), useLibrary(library));
    const QByteArray failure =
        "failed: PYTHONHOME is '/nowhere', which has no standard library for "
        "the Python " +
        version.toLatin1() + " that was found.\n";
    VERIFY_TOLD(result.output == failure + failure + "bootstrapped\n" + bothQueues(version),
                result);
}

void EnvironmentTest::failedBootstrapCanBeRetried()
{
    QFETCH(QString, library);
    QFETCH(QString, version);
    const auto result =
        runPlain(QStringLiteral("retry-after-a-broken-module"), useLibrary(library));
    VERIFY_TOLD(result.output == "failed: Python exception: No module named 'no_such_module'\n" +
                                     bothQueues(version) + "bootstrapped\n" + bothQueues(version),
                result);
}

void EnvironmentTest::damagedFrameworkFolderIsAnError()
{
    const TemporaryBundle bundle(programName);
    QVERIFY(QDir().mkpath(bundle.frameworkHome() + QStringLiteral("/lib/python3.12/encodings")));
    const auto result = runChild(bundle.program(), {QStringLiteral("bootstrap")});
    VERIFY_TOLD(!result.crashed &&
                    result.output.startsWith("failed: PYTHONHOME is '" +
                                             bundle.frameworkHome().toUtf8() + "', which has no"),
                result);
}

void EnvironmentTest::hostileFileNameIsWrittenInACLocale()
{
    QFETCH(QString, library);
    const QTemporaryDir folder;
    const auto result =
        runPlain(QStringLiteral("write-a-hostile-file-name"),
                 useLibrary(library) + Variables{{QStringLiteral("LC_ALL"), QStringLiteral("C")},
                                                 {QStringLiteral("TMPDIR"), folder.path()}});
    VERIFY_TOLD(result.output == "bootstrapped\nwritten\n", result);
}

void EnvironmentTest::processLeavesMainCleanlyWhileJobsRun()
{
    QFETCH(QString, library);
    const auto result = runPlain(QStringLiteral("leave-while-jobs-run"), useLibrary(library));
    VERIFY_TOLD(!result.crashed && result.exitCode == 0, result);
    VERIFY_TOLD(result.output == "bootstrapped\nleaving\n" && result.errors.isEmpty(), result);
}

QTEST_GUILESS_MAIN(EnvironmentTest)
#include "tst_environment.moc"
