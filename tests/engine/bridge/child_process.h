// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

/// An interpreter starts once in a process, so each case of a start is a process of its own.
namespace veltro::test {

using Variables = QList<std::pair<QByteArray, QByteArray>>;

struct ChildResult {
    bool aborted = false;
    int exitCode = 0;
    QByteArray output;
    QByteArray errors;

    /// All of it, for a test that fails.
    [[nodiscard]] QByteArray told() const
    {
        return (aborted ? "aborted, " : "exit code ") + QByteArray::number(exitCode) +
               "\nstandard output:\n" + output + "\nstandard error:\n" + errors;
    }
};

/// Fails with all that the child told.
#define VERIFY_TOLD(condition, result) QVERIFY2(condition, (result).told().constData())

/// Runs the program to its end, with this process's environment less all that is about Python,
/// and with the given variables.
inline ChildResult runChild(const QString &program, const QStringList &arguments,
                            const Variables &variables)
{
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const QString &name : environment.keys()) {
        if (name.startsWith(u"PYTHON")) {
            environment.remove(name);
        }
    }
    for (const auto &[name, value] : variables) {
        environment.insert(QString::fromUtf8(name), QString::fromUtf8(value));
    }
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    if (!process.waitForFinished(60000)) {
        process.kill();
        process.waitForFinished();
    }
    constexpr int abortSignal = 6;
    const bool crashed = process.exitStatus() == QProcess::CrashExit;
    return {crashed && process.exitCode() == abortSignal, crashed ? -1 : process.exitCode(),
            process.readAllStandardOutput(), process.readAllStandardError()};
}

/// A program of this test's own folder.
inline QString sibling(const char *name)
{
    return QCoreApplication::applicationDirPath() + u'/' + QString::fromLatin1(name);
}

struct MachineInterpreter {
    QByteArray version; ///< such as "3.12"
    QByteArray library;
    QByteArray prefix; ///< the folder that has its lib/pythonX.Y
};

/// Every shared CPython of this machine that yt-dlp can use, the system's own first.
inline QList<MachineInterpreter> machineInterpreters()
{
    QByteArrayList folders{"/usr/lib/x86_64-linux-gnu", "/usr/lib/aarch64-linux-gnu", "/usr/lib64",
                           "/usr/local/lib"};
    const QDir pyenv(QDir::homePath() + QStringLiteral("/.pyenv/versions"));
    for (const QString &version : pyenv.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        folders.append(pyenv.filePath(version).toUtf8() + "/lib");
    }
    QList<MachineInterpreter> result;
    for (const QByteArray &folder : folders) {
        for (int minor = 11; minor < 20; ++minor) {
            const QByteArray version = "3." + QByteArray::number(minor);
            const QByteArray library = folder + "/libpython" + version + ".so.1.0";
            const QByteArray prefix = folder.left(folder.indexOf("/lib"));
            if (QFile::exists(QString::fromUtf8(library)) &&
                QFile::exists(QString::fromUtf8(prefix + "/lib/python" + version + "/os.py"))) {
                result.append({version, library, prefix});
            }
        }
    }
    return result;
}

/// Rows with the columns "library" and "version".
inline void addMachineInterpreters()
{
    QTest::addColumn<QByteArray>("library");
    QTest::addColumn<QByteArray>("version");
    const auto interpreters = machineInterpreters();
    QVERIFY2(!interpreters.isEmpty(), "no shared Python 3.11 or later on this machine");
    for (const MachineInterpreter &one : interpreters) {
        QTest::newRow(one.library.constData()) << one.library << one.version;
    }
}

/// A bundle of its own for a copy of one of our programs.
class TemporaryBundle {
public:
    explicit TemporaryBundle(const char *program)
        // The program resolves its root, so a temporary folder behind a link must be resolved too.
        : root(QDir(m_folder.path()).canonicalPath().toUtf8())
        , frameworkHome(root + "/Contents/Frameworks/Python.framework/Versions/3.12")
        , m_program(QString::fromUtf8(root + '/' + program))
    {
        QVERIFY(QFile::copy(sibling(program), m_program));
        QVERIFY(QDir(m_folder.path()).mkpath(QStringLiteral("Contents/Resources")));
    }

    /// Lets the first Python 3.12 of the machine stand for the framework folder, if there is one.
    [[nodiscard]] bool stageFramework() const
    {
        for (const MachineInterpreter &one : machineInterpreters()) {
            if (one.version == "3.12") {
                const QString home = QString::fromUtf8(frameworkHome);
                return QDir().mkpath(QFileInfo(home).path()) &&
                       QFile::link(QString::fromUtf8(one.prefix), home);
            }
        }
        return false;
    }

    [[nodiscard]] ChildResult run(const char *name, const Variables &variables = {}) const
    {
        return runChild(m_program, {QString::fromLatin1(name)}, variables);
    }

private:
    QTemporaryDir m_folder;

public:
    const QByteArray root;
    const QByteArray frameworkHome;

private:
    const QString m_program;
};

}
