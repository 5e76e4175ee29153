// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/engine/bridge/child_process.h"

using namespace veltro::test;

namespace {

const QByteArray notFound = "Python library not found. Set the PYTHON_LIBRARY environment variable "
                            "with the path to a Python library.\n";
const QByteArray nowhere = "/nowhere/python.so";

ChildResult bridgeCase(const char *name, const Variables &variables = {})
{
    return runChild(sibling("bridge_case"), {QString::fromLatin1(name)}, variables);
}

}

class InterpretersTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void bridgeWorksWithEveryInterpreterOfTheMachine_data() { addMachineInterpreters(); }
    void bridgeWorksWithEveryInterpreterOfTheMachine();
    void startSuitsTheHost_data() { addMachineInterpreters(); }
    void startSuitsTheHost();
    void unfitEnvironmentIsAnError_data() { addMachineInterpreters(); }
    void unfitEnvironmentIsAnError();
    void anotherPythonOnThePathIsNotItsHome();

    void searchTriesTheNewestVersionFirst();
    void versionVariableLimitsTheSearch();
    void libraryVariableNamesTheOnlyCandidate();
    void libraryOfTheProcessIsUsedBeforeAnyFile();
    void frameworkFolderComesBeforeTheSystem();
    void legacyLibraryIsUsedByItsOwnNames();

    void plainAccessStopsTheProcessWithItsMessage_data();
    void plainAccessStopsTheProcessWithItsMessage();
    void alertIsShownOnceBeforeTheProcessStops();
    void countThatChangesWithoutTheLockStopsADebugBuild_data() { addMachineInterpreters(); }
    void countThatChangesWithoutTheLockStopsADebugBuild();
};

void InterpretersTest::bridgeWorksWithEveryInterpreterOfTheMachine()
{
    QFETCH(QByteArray, library);
    QFETCH(QByteArray, version);
    const auto started = bridgeCase("version", {{"PYTHON_LIBRARY", library}});
    VERIFY_TOLD(started.exitCode == 0 && started.output.startsWith(version + '.'), started);
    for (const char *test :
         {"tst_python_conversions", "tst_python_function", "tst_python_object"}) {
        const auto result = runChild(sibling(test), {}, {{"PYTHON_LIBRARY", library}});
        VERIFY_TOLD(result.exitCode == 0, result);
    }
}

void InterpretersTest::startSuitsTheHost()
{
    QFETCH(QByteArray, library);
    for (const char *locale : {"C", "POSIX", "de_DE.ISO-8859-1", "C.UTF-8"}) {
        const auto result = bridgeCase(
            "encodings", {{"PYTHON_LIBRARY", library}, {"LC_ALL", locale}, {"PYTHONUTF8", "0"}});
        VERIFY_TOLD(result.output.toLower() == "utf-8\nutf-8\n", result);
    }
    const auto signals = bridgeCase("signals", {{"PYTHON_LIBRARY", library}});
    VERIFY_TOLD(signals.output == "SIGINT kept\nSIGPIPE kept\n", signals);
}

void InterpretersTest::unfitEnvironmentIsAnError()
{
    QFETCH(QByteArray, library);
    QFETCH(QByteArray, version);
    const auto start = [&](const char *name, const QByteArray &value) {
        return bridgeCase("version", {{"PYTHON_LIBRARY", library}, {name, value}});
    };
    const auto wrongHome = start("PYTHONHOME", "/nowhere");
    VERIFY_TOLD(wrongHome.exitCode == 1, wrongHome);
    QCOMPARE(wrongHome.output, "error: PYTHONHOME is '/nowhere', which has no standard library for "
                               "the Python " +
                                   version + " that was found.\n");
    QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkpath(QStringLiteral("python2.7/encodings")));
    QFile package(folder.filePath(QStringLiteral("python2.7/encodings/__init__.py")));
    QVERIFY(package.open(QFile::WriteOnly) && package.write("print 'old'\n") > 0);
    package.close();
    const QByteArray path = folder.path().toUtf8();
    const auto foreign = start("PYTHONPATH", path + ':' + path + "/python2.7/");
    VERIFY_TOLD(foreign.exitCode == 1, foreign);
    QVERIFY(foreign.output.startsWith("error: PYTHONPATH has '" + path + "/python2.7/', which"));
    const auto harmless = start("PYTHONPATH", path);
    VERIFY_TOLD(harmless.exitCode == 0, harmless);
}

void InterpretersTest::anotherPythonOnThePathIsNotItsHome()
{
    // A prefix as a version manager makes it: the same version, and modules that do not fit.
    for (const MachineInterpreter &interpreter : machineInterpreters()) {
        QTemporaryDir folder;
        const QDir prefix(folder.path());
        const QString modules = QString::fromUtf8("lib/python" + interpreter.version);
        QVERIFY(prefix.mkpath(QStringLiteral("bin")) && prefix.mkpath(QStringLiteral("lib")));
        QVERIFY(QFile::link(QString::fromUtf8(interpreter.prefix) + u'/' + modules,
                            prefix.filePath(modules)));
        QVERIFY(QFile::link(QStringLiteral("/bin/true"),
                            prefix.filePath(QStringLiteral("bin/python3"))));
        const auto result =
            bridgeCase("prefix", {{"PYTHON_LIBRARY", interpreter.library},
                                  {"PATH", prefix.filePath(QStringLiteral("bin")).toUtf8()}});
        VERIFY_TOLD(result.output.trimmed() == interpreter.prefix, result);
    }
}

void InterpretersTest::searchTriesTheNewestVersionFirst()
{
    const auto result = bridgeCase("version", {{"PYTHON_LOADER_LOGGING", ""}});
    VERIFY_TOLD(result.exitCode == 0, result);
    const auto lines = result.errors.split('\n');
    QCOMPARE(lines.value(0), "Trying to load library at 'libpython3.30.so.1.0'...");
    QCOMPARE(lines.value(1), "Failed to load library at 'libpython3.30.so.1.0'.");
    QCOMPARE(lines.value(2), "Reason for failure: libpython3.30.so.1.0: cannot open shared object "
                             "file: No such file or directory");
    QCOMPARE(lines.value(3), "Trying to load library at 'libpython3.30.so'...");
    QCOMPARE(lines.value(6), "Trying to load library at 'libpython3.29.so.1.0'...");
    QCOMPARE(result.errors.count("was successfully loaded.\n"), 1);
    // Resolved on first use, and once.
    QCOMPARE(result.errors.count("Loading symbol 'Py_Initialize' from the Python library...\n"), 1);
    QCOMPARE(result.errors.count("Loading symbol 'PyImport_ImportModule' from"), 1);
    QVERIFY(!result.errors.contains("'PyCapsule_New'") && !result.errors.contains("legacy"));
}

void InterpretersTest::versionVariableLimitsTheSearch()
{
    const auto result =
        bridgeCase("library", {{"PYTHON_LOADER_LOGGING", "1"}, {"PYTHON_VERSION", "3.77"}});
    VERIFY_TOLD(result.output == notFound, result);
    QByteArrayList tried;
    for (const QByteArray &line : result.errors.split('\n')) {
        if (line.startsWith("Trying to load library at '")) {
            tried.append(line.split('\'').value(1));
        }
    }
    QCOMPARE(tried.mid(0, 2), QByteArrayList({"libpython3.77.so.1.0", "libpython3.77.so"}));
    QVERIFY(tried.value(2).startsWith("/usr/lib/"));
    QCOMPARE(tried.constLast(), "/usr/local/lib/libpython3.77.so");
    QVERIFY(std::all_of(tried.begin(), tried.end(),
                        [](const auto &path) { return path.contains("libpython3.77.so"); }));
}

void InterpretersTest::libraryVariableNamesTheOnlyCandidate()
{
    const auto result =
        bridgeCase("library", {{"PYTHON_LOADER_LOGGING", "1"}, {"PYTHON_LIBRARY", nowhere}});
    QCOMPARE(result.errors, "Trying to load library at '/nowhere/python.so'...\n"
                            "Failed to load library at '/nowhere/python.so'.\n"
                            "Reason for failure: /nowhere/python.so: cannot open shared object "
                            "file: No such file or directory\n");
    QCOMPARE(result.output, notFound);
    // One that loads but is no interpreter.
    QCOMPARE(bridgeCase("library", {{"PYTHON_LIBRARY", "libm.so.6"}}).output, notFound);
    // Only a use that needs the library stops the process.
    const auto used = bridgeCase("version", {{"PYTHON_LIBRARY", nowhere}});
    VERIFY_TOLD(used.aborted && used.errors == notFound, used);
}

void InterpretersTest::libraryOfTheProcessIsUsedBeforeAnyFile()
{
    const MachineInterpreter there = machineInterpreters().constLast();
    const auto result = runChild(sibling("bridge_case"),
                                 {QStringLiteral("version"), QString::fromUtf8(there.library)},
                                 {{"PYTHON_LOADER_LOGGING", "1"}, {"PYTHON_LIBRARY", nowhere}});
    VERIFY_TOLD(result.output.startsWith(there.version), result);
    QVERIFY(!result.errors.contains("Trying to load library"));
}

void InterpretersTest::frameworkFolderComesBeforeTheSystem()
{
    const TemporaryBundle bundle("bridge_case");
    if (!bundle.stageFramework()) {
        QSKIP("no shared Python 3.12 on this machine");
    }
    const auto result = bundle.run("version", {{"PYTHON_LOADER_LOGGING", "1"}});
    VERIFY_TOLD(result.output.startsWith("3.12."), result);
    QVERIFY(result.errors.contains("Library at '" + bundle.frameworkHome +
                                   "/lib/libpython3.12.so.1.0' was successfully loaded.\n"));
}

void InterpretersTest::legacyLibraryIsUsedByItsOwnNames()
{
    const QDir pyenv(QDir::homePath() + QStringLiteral("/.pyenv/versions"));
    const auto versions = pyenv.entryList({QStringLiteral("2.7*")}, QDir::Dirs);
    if (versions.isEmpty()) {
        QSKIP("no shared Python 2.7 on this machine");
    }
    const QByteArray prefix = pyenv.filePath(versions.first()).toUtf8();
    const auto result =
        bridgeCase("legacy", {{"PYTHON_LIBRARY", prefix + "/lib/libpython2.7.so.1.0"},
                              {"PYTHON_LOADER_LOGGING", "1"}});
    VERIFY_TOLD(result.aborted && result.output == "text-77bytesTEXT\n", result);
    QVERIFY(result.errors.contains("Loaded legacy Python library, using legacy symbols...\n"));
    QVERIFY(result.errors.contains("Loading symbol 'PyInt_FromLong' from the Python library...\n"));
    QVERIFY(result.errors.endsWith("PythonFunction only supports Python 3.1 and above.\n"));
}

void InterpretersTest::plainAccessStopsTheProcessWithItsMessage_data()
{
    QTest::addColumn<QByteArray>("message");
    const auto row = [](const char *name, const char *message) {
        QTest::newRow(name) << QByteArray(message);
    };
    row("stop-builtin", "Could not access PythonObject member 'nope'");
    row("stop-member", "Could not access PythonObject member 'nope'");
    row("stop-set-member", "Could not set PythonObject member 'nope' to the specified value");
    row("stop-element", "Could not access PythonObject element corresponding to the specified key "
                        "values: [9]");
    row("stop-call", "Invalid Python call: 5");
    row("stop-import", "Python exception: No module named 'no_such_module'");
    row("stop-iteration", "Python exception: 'int' object is not iterable");
}

void InterpretersTest::plainAccessStopsTheProcessWithItsMessage()
{
    QFETCH(QByteArray, message);
    const auto result = bridgeCase(QTest::currentDataTag());
    VERIFY_TOLD(result.aborted, result);
    QCOMPARE(result.errors.trimmed().split('\n').constLast(), message);
}

void InterpretersTest::alertIsShownOnceBeforeTheProcessStops()
{
    const auto result = bridgeCase("stop-with-alert");
    VERIFY_TOLD(result.aborted, result);
    QCOMPARE(result.output, "alert: Could not access PythonObject member 'nope'\n");
}

void InterpretersTest::countThatChangesWithoutTheLockStopsADebugBuild()
{
    QFETCH(QByteArray, library);
    const auto result = bridgeCase("drop-without-lock", {{"PYTHON_LIBRARY", library}});
#ifndef NDEBUG
    VERIFY_TOLD(result.aborted && result.output == "made\n", result);
    QCOMPARE(result.errors, "A Python reference count was about to change without the "
                            "interpreter lock.\n");
#else
    VERIFY_TOLD(result.output == "made\nsurvived\n", result);
#endif
}

QTEST_GUILESS_MAIN(InterpretersTest)
#include "tst_interpreters.moc"
