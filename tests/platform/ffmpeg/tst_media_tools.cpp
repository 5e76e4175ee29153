// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/bundle.h"
#include "platform/ffmpeg/media_module.h"
#include "platform/ffmpeg/media_tools.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>
#include <string>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;
using namespace veltro::ffmpeg;

namespace {

constexpr const char *childArgument = "--in-a-bundle-of-its-own";

QString moduleFile()
{
    return QString::fromStdString((veltro::Bundle::main().plugIns() / mediaModuleFile).string());
}

bool hasLibrariesInMemory()
{
    QFile maps(u"/proc/self/maps"_s);
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains("libavformat");
}

std::string refusal()
{
    try {
        mediaTools();
        return {};
    } catch (const MediaToolsMissing &missing) {
        return missing.what();
    }
}

// What the copy of this program does in a bundle that has no module yet: each step that goes
// wrong is told by a line.
int runInOwnBundle(const QString &realModule)
{
    int faults = 0;
    const auto require = [&faults](bool holds, const char *what) {
        if (!holds) {
            std::fprintf(stdout, "not so: %s\n", what);
            ++faults;
        }
    };
    require(refusal().find(mediaModuleFile) != std::string::npos, "an absent module is named");

    QDir().mkpath(QFileInfo(moduleFile()).path());
    QFile broken(moduleFile());
    require(broken.open(QIODevice::WriteOnly) && broken.write("no library") > 0, "it is written");
    broken.close();
    require(refusal().find(mediaModuleFile) != std::string::npos, "a broken module is named");
    require(!hasLibrariesInMemory(), "nothing is loaded before the module is");

    require(broken.remove() && QFile::copy(realModule, moduleFile()), "the module is put in place");
    std::vector<MediaTools *> seen(8, nullptr);
    std::vector<std::thread> threads;
    threads.reserve(seen.size());
    for (MediaTools *&tools : seen) {
        threads.emplace_back([&tools] { tools = &mediaTools(); });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    require(seen == std::vector<MediaTools *>(seen.size(), &mediaTools()),
            "every thread gets the same tools once they are there");
    require(hasLibrariesInMemory(), "the libraries come with the module");
    const std::vector<std::string> arguments{"-version"};
    require(mediaTools().probe(arguments).code == 0, "the tools work");
    return faults;
}

}

class TestMediaTools : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void loadsTheModuleOnFirstUseAndTriesAgainAfterAFailure();
};

void TestMediaTools::loadsTheModuleOnFirstUseAndTriesAgainAfterAFailure()
{
    const QTemporaryDir bundle;
    const QString program = bundle.filePath(u"program"_s);
    QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), program));
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, {QString::fromLatin1(childArgument), moduleFile()});
    QVERIFY(process.waitForFinished(-1));
    const QByteArray output = process.readAll();
    QVERIFY2(process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0,
             output.constData());
}

int main(int count, char **texts)
{
    QCoreApplication application(count, texts);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 3 && arguments[1] == QLatin1StringView(childArgument)) {
        return runInOwnBundle(arguments[2]);
    }
    TestMediaTools test;
    return QTest::qExec(&test, arguments);
}
#include "tst_media_tools.moc"
