// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QTest>

/// An interpreter starts once in a process, so each case of a start is a process of its own.
namespace veltro::test {

using Variables = QList<std::pair<QString, QString>>;

struct ChildResult {
    bool crashed = false;
    int exitCode = 0;
    QByteArray output;
    QByteArray errors;

    /// All of it, for a test that fails.
    [[nodiscard]] QByteArray told() const
    {
        return (crashed ? "crashed, " : "exit code ") + QByteArray::number(exitCode) +
               "\nstandard output:\n" + output + "\nstandard error:\n" + errors;
    }
};

/// Fails with all that the child told.
#define VERIFY_TOLD(condition, result) QVERIFY2(condition, (result).told().constData())

/// Runs the program to its end, with this process's environment less all that is about Python,
/// and with the given variables.
inline ChildResult runChild(const QString &program, const QStringList &arguments,
                            const Variables &variables = {})
{
    QProcessEnvironment environment;
    const auto inherited = QProcessEnvironment::systemEnvironment();
    for (const QString &name : inherited.keys()) {
        if (!name.startsWith(QLatin1String("PYTHON"))) {
            environment.insert(name, inherited.value(name));
        }
    }
    environment.insert(QStringLiteral("QTEST_DISABLE_STACK_DUMP"), QStringLiteral("1"));
    for (const auto &[name, value] : variables) {
        environment.insert(name, value);
    }
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    if (!process.waitForFinished(60000)) {
        process.kill();
        process.waitForFinished();
        return {true, -1, "did not end in a minute\n" + process.readAllStandardOutput(),
                process.readAllStandardError()};
    }
    return {process.exitStatus() == QProcess::CrashExit, process.exitCode(),
            process.readAllStandardOutput(), process.readAllStandardError()};
}

/// A program of this test's own folder.
inline QString sibling(const QString &name)
{
    return QCoreApplication::applicationDirPath() + u'/' + name;
}

struct MachineInterpreter {
    QString version; ///< such as "3.12"
    QString library;
    QString prefix; ///< the folder that has its lib/pythonX.Y
};

/// Every shared CPython of this machine that yt-dlp can use, the system's own first.
inline QList<MachineInterpreter> machineInterpreters()
{
    QStringList folders{QStringLiteral("/usr/lib/x86_64-linux-gnu"),
                        QStringLiteral("/usr/lib/aarch64-linux-gnu"), QStringLiteral("/usr/lib64"),
                        QStringLiteral("/usr/local/lib")};
    const QDir pyenv(QDir::homePath() + QStringLiteral("/.pyenv/versions"));
    for (const QString &version : pyenv.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        folders.append(pyenv.filePath(version) + QStringLiteral("/lib"));
    }
    QList<MachineInterpreter> result;
    for (const QString &folder : folders) {
        for (int minor = 11; minor < 20; ++minor) {
            const QString version = QStringLiteral("3.%1").arg(minor);
            const QString library = QStringLiteral("%1/libpython%2.so.1.0").arg(folder, version);
            const QString prefix = folder.section(QStringLiteral("/lib"), 0, 0);
            if (QFile::exists(library) &&
                QFile::exists(QStringLiteral("%1/lib/python%2/os.py").arg(prefix, version))) {
                result.append({version, library, prefix});
            }
        }
    }
    return result;
}

/// A bundle of its own for a copy of one of our programs.
class TemporaryBundle {
public:
    explicit TemporaryBundle(const QString &program)
    {
        // The copy's root is resolved by the system, so a linked temporary folder must be too.
        m_root = QDir(m_folder.path()).canonicalPath();
        m_program = m_root + u'/' + program;
        QVERIFY(QFile::copy(sibling(program), m_program));
        QVERIFY(QDir(m_root).mkpath(QStringLiteral("Contents/Resources")));
    }

    [[nodiscard]] const QString &root() const { return m_root; }
    [[nodiscard]] const QString &program() const { return m_program; }
    [[nodiscard]] QString frameworkHome() const
    {
        return m_root + QStringLiteral("/Contents/Frameworks/Python.framework/Versions/3.12");
    }
    /// Stages an interpreter: its prefix stands for the framework folder.
    void stage(const QString &prefix) const
    {
        QVERIFY(QDir().mkpath(QFileInfo(frameworkHome()).path()));
        QVERIFY(QFile::link(prefix, frameworkHome()));
    }

private:
    QTemporaryDir m_folder;
    QString m_root;
    QString m_program;
};

} // namespace veltro::test
