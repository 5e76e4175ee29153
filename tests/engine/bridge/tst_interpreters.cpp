// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/engine/bridge/child_process.h"

#include <csignal>

using namespace veltro::test;

namespace {

QString bridgeCase()
{
    return sibling(QStringLiteral("bridge_case"));
}

QString numbered(const MachineInterpreter &interpreter)
{
    return interpreter.version + u' ' + interpreter.library;
}

} // namespace

class InterpretersTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void systemHasASharedInterpreter();
    void bridgeWorksWithEveryInterpreterOfTheMachine_data();
    void bridgeWorksWithEveryInterpreterOfTheMachine();
    void fileNamesAreUtf8WhateverTheLocale_data();
    void fileNamesAreUtf8WhateverTheLocale();

    void searchTriesTheNewestVersionFirst();
    void versionVariableLimitsTheSearch();
    void libraryVariableNamesTheOnlyCandidate();
    void libraryOfTheProcessIsUsedBeforeAnyFile();
    void frameworkFolderComesBeforeTheSystem();
    void missingLibraryStopsOnlyTheUseOfIt();
    void legacyLibraryIsUsedByItsOwnNames();

    void wrongPythonHomeIsAnError();
    void foreignStandardLibraryOnTheSearchPathIsAnError();
    void anotherPythonOnThePathIsNotItsHome();
    void startKeepsTheSignalDispositions();
    void plainAccessStopsTheProcessWithItsMessage_data();
    void plainAccessStopsTheProcessWithItsMessage();
    void alertIsShownOnceBeforeTheProcessStops();
    void countThatChangesWithoutTheLockStopsADebugBuild();
};

void InterpretersTest::systemHasASharedInterpreter()
{
    const auto found = runChild(bridgeCase(), {QStringLiteral("library")});
    QCOMPARE(found.output, "loaded\n");
    QVERIFY(!machineInterpreters().isEmpty());
}

void InterpretersTest::bridgeWorksWithEveryInterpreterOfTheMachine_data()
{
    QTest::addColumn<QString>("library");
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("program");
    for (const MachineInterpreter &interpreter : machineInterpreters()) {
        for (const char *program :
             {"tst_python_conversions", "tst_python_function", "tst_python_object"}) {
            QTest::addRow("%s with %s", program, qPrintable(interpreter.library))
                << interpreter.library << interpreter.version << QString::fromLatin1(program);
        }
    }
}

void InterpretersTest::bridgeWorksWithEveryInterpreterOfTheMachine()
{
    QFETCH(QString, library);
    QFETCH(QString, version);
    QFETCH(QString, program);
    const Variables variables{{QStringLiteral("PYTHON_LIBRARY"), library}};
    const auto started = runChild(bridgeCase(), {QStringLiteral("version")}, variables);
    VERIFY_TOLD(started.exitCode == 0 && started.output.startsWith(version.toLatin1() + '.'),
                started);
    const auto result = runChild(sibling(program), {}, variables);
    VERIFY_TOLD(!result.crashed && result.exitCode == 0, result);
}

void InterpretersTest::fileNamesAreUtf8WhateverTheLocale_data()
{
    QTest::addColumn<QString>("library");
    QTest::addColumn<QString>("locale");
    for (const MachineInterpreter &interpreter : machineInterpreters()) {
        for (const char *locale : {"C", "POSIX", "de_DE.ISO-8859-1", "C.UTF-8"}) {
            QTest::addRow("%s in %s", qPrintable(numbered(interpreter)), locale)
                << interpreter.library << QString::fromLatin1(locale);
        }
    }
}

void InterpretersTest::fileNamesAreUtf8WhateverTheLocale()
{
    QFETCH(QString, library);
    QFETCH(QString, locale);
    const auto result = runChild(bridgeCase(), {QStringLiteral("encodings")},
                                 {{QStringLiteral("PYTHON_LIBRARY"), library},
                                  {QStringLiteral("LC_ALL"), locale},
                                  {QStringLiteral("PYTHONUTF8"), QStringLiteral("0")}});
    VERIFY_TOLD(result.output.toLower() == "utf-8\nutf-8\n", result);
}

void InterpretersTest::searchTriesTheNewestVersionFirst()
{
    const auto result = runChild(bridgeCase(), {QStringLiteral("version")},
                                 {{QStringLiteral("PYTHON_LOADER_LOGGING"), QString()}});
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
    QVERIFY(!result.errors.contains("'PyCapsule_New'"));
    QVERIFY(!result.errors.contains("legacy"));
}

void InterpretersTest::versionVariableLimitsTheSearch()
{
    const auto result = runChild(bridgeCase(), {QStringLiteral("library")},
                                 {{QStringLiteral("PYTHON_LOADER_LOGGING"), QStringLiteral("1")},
                                  {QStringLiteral("PYTHON_VERSION"), QStringLiteral("3.77")}});
    VERIFY_TOLD(result.output == "Python library not found. Set the PYTHON_LIBRARY environment "
                                 "variable with the path to a Python library.\n",
                result);
    QStringList tried;
    for (const QByteArray &line : result.errors.split('\n')) {
        if (line.startsWith("Trying to load library at '")) {
            QVERIFY2(line.contains("libpython3.77.so"), line.constData());
            tried.append(QString::fromUtf8(line.split('\'').value(1)));
        }
    }
    QCOMPARE(tried.value(0), QStringLiteral("libpython3.77.so.1.0"));
    QCOMPARE(tried.value(1), QStringLiteral("libpython3.77.so"));
    QVERIFY(tried.value(2).startsWith(u"/usr/lib/"));
    QVERIFY(tried.contains(QStringLiteral("/usr/local/lib/libpython3.77.so.1.0")));
}

void InterpretersTest::libraryVariableNamesTheOnlyCandidate()
{
    const auto result =
        runChild(bridgeCase(), {QStringLiteral("library")},
                 {{QStringLiteral("PYTHON_LOADER_LOGGING"), QStringLiteral("1")},
                  {QStringLiteral("PYTHON_LIBRARY"), QStringLiteral("/nowhere/python.so")}});
    QCOMPARE(result.errors, "Trying to load library at '/nowhere/python.so'...\n"
                            "Failed to load library at '/nowhere/python.so'.\n"
                            "Reason for failure: /nowhere/python.so: cannot open shared object "
                            "file: No such file or directory\n");
    VERIFY_TOLD(result.output.startsWith("Python library not found."), result);
    // One that loads but is no interpreter.
    const auto other = runChild(bridgeCase(), {QStringLiteral("library")},
                                {{QStringLiteral("PYTHON_LIBRARY"), QStringLiteral("libm.so.6")}});
    VERIFY_TOLD(other.output.startsWith("Python library not found."), other);
}

void InterpretersTest::libraryOfTheProcessIsUsedBeforeAnyFile()
{
    const MachineInterpreter interpreter = machineInterpreters().constLast();
    const auto result =
        runChild(bridgeCase(), {QStringLiteral("version"), interpreter.library},
                 {{QStringLiteral("PYTHON_LOADER_LOGGING"), QStringLiteral("1")},
                  {QStringLiteral("PYTHON_LIBRARY"), QStringLiteral("/nowhere/python.so")}});
    VERIFY_TOLD(result.output.startsWith(interpreter.version.toLatin1()), result);
    QVERIFY(!result.errors.contains("Trying to load library"));
}

void InterpretersTest::frameworkFolderComesBeforeTheSystem()
{
    for (const MachineInterpreter &interpreter : machineInterpreters()) {
        if (interpreter.version == u"3.12") {
            const TemporaryBundle bundle(QStringLiteral("bridge_case"));
            bundle.stage(interpreter.prefix);
            const auto result =
                runChild(bundle.program(), {QStringLiteral("version")},
                         {{QStringLiteral("PYTHON_LOADER_LOGGING"), QStringLiteral("1")}});
            VERIFY_TOLD(result.output.startsWith("3.12."), result);
            const QString library =
                bundle.frameworkHome() + QStringLiteral("/lib/libpython3.12.so.1.0");
            QVERIFY(result.errors.contains("Library at '" + library.toUtf8() +
                                           "' was successfully loaded."));
            return;
        }
    }
    QSKIP("no shared Python 3.12 on this machine");
}

void InterpretersTest::missingLibraryStopsOnlyTheUseOfIt()
{
    const Variables none{{QStringLiteral("PYTHON_LIBRARY"), QStringLiteral("/nowhere/python.so")}};
    const auto asked = runChild(bridgeCase(), {QStringLiteral("library")}, none);
    VERIFY_TOLD(!asked.crashed && asked.exitCode == 0, asked);
    const auto used = runChild(bridgeCase(), {QStringLiteral("version")}, none);
    VERIFY_TOLD(used.crashed && used.exitCode == SIGABRT, used);
    QCOMPARE(used.errors, "Python library not found. Set the PYTHON_LIBRARY environment variable "
                          "with the path to a Python library.\n");
}

void InterpretersTest::legacyLibraryIsUsedByItsOwnNames()
{
    const QDir pyenv(QDir::homePath() + QStringLiteral("/.pyenv/versions"));
    const auto versions = pyenv.entryList({QStringLiteral("2.7*")}, QDir::Dirs);
    if (versions.isEmpty()) {
        QSKIP("no shared Python 2.7 on this machine");
    }
    const QString library =
        pyenv.filePath(versions.first()) + QStringLiteral("/lib/libpython2.7.so.1.0");
    const auto result = runChild(bridgeCase(), {QStringLiteral("legacy")},
                                 {{QStringLiteral("PYTHON_LIBRARY"), library},
                                  {QStringLiteral("PYTHON_LOADER_LOGGING"), QStringLiteral("1")}});
    QCOMPARE(result.output, "text-77bytesTEXT\n");
    VERIFY_TOLD(result.crashed && result.exitCode == SIGABRT, result);
    QVERIFY(result.errors.contains("Loaded legacy Python library, using legacy symbols...\n"));
    QVERIFY(result.errors.contains("Loading symbol 'PyInt_FromLong' from the Python library...\n"));
    QVERIFY(result.errors.endsWith("PythonFunction only supports Python 3.1 and above.\n"));
}

void InterpretersTest::wrongPythonHomeIsAnError()
{
    for (const MachineInterpreter &interpreter : machineInterpreters()) {
        const Variables library{{QStringLiteral("PYTHON_LIBRARY"), interpreter.library}};
        const Variables wrong{{QStringLiteral("PYTHONHOME"), QStringLiteral("/nowhere")}};
        const auto result = runChild(bridgeCase(), {QStringLiteral("version")}, library + wrong);
        VERIFY_TOLD(!result.crashed && result.exitCode == 1, result);
        QCOMPARE(result.output,
                 "error: PYTHONHOME is '/nowhere', which has no standard library for "
                 "the Python " +
                     interpreter.version.toLatin1() + " that was found.\n");
        const Variables right{{QStringLiteral("PYTHONHOME"), interpreter.prefix}};
        const auto fitting = runChild(bridgeCase(), {QStringLiteral("version")}, library + right);
        VERIFY_TOLD(fitting.exitCode == 0 &&
                        fitting.output.startsWith(interpreter.version.toLatin1()),
                    fitting);
    }
}

void InterpretersTest::foreignStandardLibraryOnTheSearchPathIsAnError()
{
    QTemporaryDir folder;
    const QString foreign = folder.filePath(QStringLiteral("python2.7"));
    QVERIFY(QDir().mkpath(foreign + QStringLiteral("/encodings")));
    QFile package(foreign + QStringLiteral("/encodings/__init__.py"));
    QVERIFY(package.open(QFile::WriteOnly) && package.write("print 'old'\n") > 0);
    package.close();
    const auto result =
        runChild(bridgeCase(), {QStringLiteral("version")},
                 {{QStringLiteral("PYTHONPATH"), folder.path() + u':' + foreign + u'/'}});
    VERIFY_TOLD(!result.crashed && result.exitCode == 1, result);
    QVERIFY(result.output.startsWith("error: PYTHONPATH has '" + foreign.toUtf8() + "/', which"));
    const auto harmless = runChild(bridgeCase(), {QStringLiteral("version")},
                                   {{QStringLiteral("PYTHONPATH"), folder.path()}});
    VERIFY_TOLD(harmless.exitCode == 0, harmless);
}

void InterpretersTest::anotherPythonOnThePathIsNotItsHome()
{
    // A prefix as a version manager makes it: the same version, and modules that do not fit.
    for (const MachineInterpreter &interpreter : machineInterpreters()) {
        QTemporaryDir folder;
        const QDir prefix(folder.path());
        const QString modules = QStringLiteral("lib/python") + interpreter.version;
        QVERIFY(prefix.mkpath(QStringLiteral("bin")) && prefix.mkpath(QStringLiteral("lib")));
        QVERIFY(QFile::link(interpreter.prefix + u'/' + modules, prefix.filePath(modules)));
        QVERIFY(QFile::link(QStringLiteral("/bin/true"),
                            prefix.filePath(QStringLiteral("bin/python3"))));
        const auto result =
            runChild(bridgeCase(), {QStringLiteral("prefix")},
                     {{QStringLiteral("PYTHON_LIBRARY"), interpreter.library},
                      {QStringLiteral("PATH"), prefix.filePath(QStringLiteral("bin"))}});
        VERIFY_TOLD(result.output.trimmed() == interpreter.prefix.toUtf8(), result);
    }
}

void InterpretersTest::startKeepsTheSignalDispositions()
{
    for (const MachineInterpreter &interpreter : machineInterpreters()) {
        const auto result = runChild(bridgeCase(), {QStringLiteral("signals")},
                                     {{QStringLiteral("PYTHON_LIBRARY"), interpreter.library}});
        VERIFY_TOLD(result.output == "SIGINT kept\nSIGPIPE kept\n", result);
    }
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
    const auto result = runChild(bridgeCase(), {QString::fromLatin1(QTest::currentDataTag())});
    VERIFY_TOLD(result.crashed && result.exitCode == SIGABRT, result);
    QCOMPARE(result.errors.trimmed().split('\n').constLast(), message);
}

void InterpretersTest::alertIsShownOnceBeforeTheProcessStops()
{
    const auto result = runChild(bridgeCase(), {QStringLiteral("stop-with-alert")});
    VERIFY_TOLD(result.crashed && result.exitCode == SIGABRT, result);
    QCOMPARE(result.output, "alert: Could not access PythonObject member 'nope'\n");
}

void InterpretersTest::countThatChangesWithoutTheLockStopsADebugBuild()
{
    for (const MachineInterpreter &interpreter : machineInterpreters()) {
        const auto result = runChild(bridgeCase(), {QStringLiteral("drop-without-lock")},
                                     {{QStringLiteral("PYTHON_LIBRARY"), interpreter.library}});
#ifndef NDEBUG
        VERIFY_TOLD(result.crashed && result.exitCode == SIGABRT && result.output == "made\n",
                    result);
        QCOMPARE(result.errors, "A Python reference count was about to change without the "
                                "interpreter lock.\n");
#else
        VERIFY_TOLD(result.output == "made\nsurvived\n", result);
#endif
    }
}

QTEST_GUILESS_MAIN(InterpretersTest)
#include "tst_interpreters.moc"
