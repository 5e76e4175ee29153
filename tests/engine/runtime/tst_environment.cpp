// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/engine/bridge/child_process.h"

using namespace veltro::test;

namespace {

/// What a case tells when both queues work and leave the lock free.
QByteArray bothQueues(const QByteArray &version)
{
    return "com.veltro.python.primary " + version + "\ncom.veltro.python.probe " + version + '\n';
}

}

class EnvironmentTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void frameworkFolderShapesTheSearchPath();
    void damagedFrameworkFolderIsAnError();
    void withoutAFrameworkFolderOnlyTheOtherVariablesAreSet_data() { addMachineInterpreters(); }
    void withoutAFrameworkFolderOnlyTheOtherVariablesAreSet();
    void certificatesOfTheBundleAreNamed();
    void unusableTemporaryFolderIsReplaced();
    void secondPreparationChangesNothing();

    void startsEndWithBothQueuesWorking_data() { addMachineInterpreters(); }
    void startsEndWithBothQueuesWorking();
    void hostileFileNameIsWrittenInACLocale_data() { addMachineInterpreters(); }
    void hostileFileNameIsWrittenInACLocale();
    void processLeavesMainCleanlyWhileJobsRun_data() { addMachineInterpreters(); }
    void processLeavesMainCleanlyWhileJobsRun();
};

void EnvironmentTest::frameworkFolderShapesTheSearchPath()
{
    const TemporaryBundle bundle("runtime_case");
    if (!bundle.stageFramework()) {
        QSKIP("no shared Python 3.12 on this machine");
    }
    // Both are replaced, not extended, and so cannot do harm.
    const auto result = bundle.run("start", {{"PYTHONPATH", "/stale"}, {"PYTHONHOME", "/stale"}});
    VERIFY_TOLD(result.exitCode == 0 && result.output.endsWith(bothQueues("3.12")), result);
    const QByteArray resources = bundle.root + "/Contents/Resources";
    const QByteArray library = bundle.frameworkHome + "/lib/python3.12";
    const QByteArrayList path{resources, library, library + "/lib-dynload", resources + "/yt-dlp"};
    const QByteArrayList lines = result.output.split('\n');
    QCOMPARE(lines.value(0), "bootstrapped");
    QCOMPARE(lines.value(1), "PYTHONHOME=" + bundle.frameworkHome);
    QCOMPARE(lines.value(2), "PYTHONPATH=" + path.join(':'));
    QVERIFY2(lines.value(9).startsWith("sys.path " + path.join(' ')), lines.value(9).constData());
}

void EnvironmentTest::damagedFrameworkFolderIsAnError()
{
    const TemporaryBundle bundle("runtime_case");
    const QByteArray package = bundle.frameworkHome + "/lib/python3.12/encodings";
    QVERIFY(QDir().mkpath(QString::fromUtf8(package)));
    const auto result = bundle.run("bootstrap");
    VERIFY_TOLD(result.exitCode == 0 &&
                    result.output.startsWith("failed: PYTHONHOME is '" + bundle.frameworkHome +
                                             "', which has no standard"),
                result);
}

void EnvironmentTest::withoutAFrameworkFolderOnlyTheOtherVariablesAreSet()
{
    QFETCH(QByteArray, library);
    QFETCH(QByteArray, version);
    const TemporaryBundle bundle("runtime_case");
    const auto result = bundle.run("start", {{"PYTHON_LIBRARY", library},
                                             {"PYTHONIOENCODING", "ascii"},
                                             {"SSL_CERT_FILE", "/own/one"},
                                             {"REQUESTS_CA_BUNDLE", "/own/other"},
                                             {"TMPDIR", bundle.root}});
    VERIFY_TOLD(result.output.startsWith("bootstrapped\nPYTHONHOME=(unset)\nPYTHONPATH=(unset)\n"
                                         "PYTHONIOENCODING=UTF-8\nPYTHONUNBUFFERED=1\n"
                                         "PYTHONDONTWRITEBYTECODE=1\nTMPDIR=" +
                                         bundle.root +
                                         "\nSSL_CERT_FILE=/own/one\n"
                                         "REQUESTS_CA_BUNDLE=/own/other\n"),
                result);
    VERIFY_TOLD(result.output.endsWith(bothQueues(version)), result);
}

void EnvironmentTest::certificatesOfTheBundleAreNamed()
{
    const TemporaryBundle bundle("runtime_case");
    const QByteArray certificates = bundle.root + "/Contents/Resources/cacert.pem";
    QFile file(QString::fromUtf8(certificates));
    QVERIFY(file.open(QFile::WriteOnly));
    const auto result = bundle.run("start", {{"SSL_CERT_FILE", "/own"}});
    VERIFY_TOLD(result.output.contains("SSL_CERT_FILE=" + certificates +
                                       "\nREQUESTS_CA_BUNDLE=" + certificates + '\n'),
                result);
}

void EnvironmentTest::unusableTemporaryFolderIsReplaced()
{
    const TemporaryBundle bundle("runtime_case");
    for (const char *unusable : {"/nowhere", "relative", "/etc/passwd", ""}) {
        const auto result = bundle.run("start", {{"TMPDIR", unusable}});
        VERIFY_TOLD(result.output.contains("TMPDIR=/tmp\n"), result);
    }
}

void EnvironmentTest::secondPreparationChangesNothing()
{
    const auto result = TemporaryBundle("runtime_case").run("prepare-twice");
    VERIFY_TOLD(result.output == "bootstrapped\nbootstrapped\nlater later\n", result);
}

void EnvironmentTest::startsEndWithBothQueuesWorking()
{
    QFETCH(QByteArray, library);
    QFETCH(QByteArray, version);
    const TemporaryBundle bundle("runtime_case");
    const QByteArray wrongHome = "failed: PYTHONHOME is '/nowhere', which has no standard library "
                                 "for the Python " +
                                 version + " that was found.\n";
    const QByteArray queues = bothQueues(version);
    const QList<std::pair<const char *, QByteArray>> cases{
        {"prepare-from-many-threads", queues},
        {"retry-after-a-wrong-home", wrongHome + wrongHome + "bootstrapped\n" + queues},
    };
    for (const auto &[name, expected] : cases) {
        const auto result = bundle.run(name, {{"PYTHON_LIBRARY", library}});
        VERIFY_TOLD(result.exitCode == 0 && result.output == expected, result);
    }
}

void EnvironmentTest::hostileFileNameIsWrittenInACLocale()
{
    QFETCH(QByteArray, library);
    const TemporaryBundle bundle("runtime_case");
    const auto result =
        bundle.run("write-a-hostile-file-name",
                   {{"PYTHON_LIBRARY", library}, {"LC_ALL", "C"}, {"TMPDIR", bundle.root}});
    VERIFY_TOLD(result.output == "bootstrapped\nwritten\n", result);
}

void EnvironmentTest::processLeavesMainCleanlyWhileJobsRun()
{
    QFETCH(QByteArray, library);
    const auto result =
        TemporaryBundle("runtime_case").run("leave-while-jobs-run", {{"PYTHON_LIBRARY", library}});
    VERIFY_TOLD(result.exitCode == 0 && result.output == "bootstrapped\nleaving\n" &&
                    result.errors.isEmpty(),
                result);
}

QTEST_GUILESS_MAIN(EnvironmentTest)
#include "tst_environment.moc"
