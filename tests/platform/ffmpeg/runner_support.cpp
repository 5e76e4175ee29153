// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/platform/ffmpeg/runner_support.h"

#include <QTest>

#include <clocale>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace veltro::ffmpeg {

std::vector<std::string> argumentsOf(const QStringList &arguments)
{
    std::vector<std::string> texts;
    for (const QString &argument : arguments) {
        texts.push_back(argument.toStdString());
    }
    return texts;
}

QStringList wordsOf(const QString &command)
{
    return command.split(u' ', Qt::SkipEmptyParts);
}

QStringList wordsOf(const char *command)
{
    return wordsOf(QString::fromUtf8(command));
}

QStringList playbackCommand(const QString &input, const QString &output)
{
    return wordsOf("-y -hide_banner -i") + QStringList{input} +
           wordsOf("-c:v h264_videotoolbox -b:v 4M -allow_sw 1 -pix_fmt yuv420p -c:a copy "
                   "-movflags +faststart") +
           QStringList{output};
}

ToolAnswer runInProcess(const QStringList &arguments)
{
    const auto session = mediaTools().makeSession();
    const int code = session->run(argumentsOf(arguments));
    return {code, QByteArray::fromStdString(session->output()),
            QByteArray::fromStdString(session->log())};
}

BackgroundRun::BackgroundRun(const QStringList &arguments)
    : m_session(mediaTools().makeSession())
    , m_thread([this, words = argumentsOf(arguments)] { m_code = m_session->run(words); })
{}

bool BackgroundRun::hasBegun() const
{
    return QTest::qWaitFor([this] { return positionSeconds() > 0; }, 60'000);
}

int BackgroundRun::finish()
{
    if (m_thread.joinable()) {
        m_thread.join();
    }
    return m_code;
}

int BackgroundRun::cancel()
{
    m_session->cancel();
    return finish();
}

CommaLocale::CommaLocale()
{
    const QString made = m_folder.filePath(u"de_DE.UTF-8"_s);
    static_cast<void>(runTool(u"localedef"_s, wordsOf("-i de_DE -f UTF-8") + QStringList{made}));
    qputenv("LOCPATH", m_folder.path().toLocal8Bit());
    setlocale(LC_ALL, "de_DE.UTF-8");
}

CommaLocale::~CommaLocale()
{
    setlocale(LC_ALL, "C.UTF-8");
    qunsetenv("LOCPATH");
}

bool CommaLocale::isInForce()
{
    return std::strtod("1,5", nullptr) == 1.5;
}

qint64 residentBytes()
{
    constexpr qint64 page = 4096;
    return contentOf(u"/proc/self/statm"_s).split(' ').value(1).toLongLong() * page;
}

QByteArray lastLineOf(const QByteArray &log)
{
    return log.trimmed().split('\n').last();
}

QStringList streamFacts(const QString &path, const QString &entries)
{
    const ToolAnswer answer =
        runTool(u"ffprobe"_s, {u"-v"_s, u"error"_s, u"-show_entries"_s, u"stream="_s + entries,
                               u"-of"_s, u"csv=p=0"_s, path});
    return QString::fromUtf8(answer.output).split(u'\n', Qt::SkipEmptyParts);
}

QStringList packetsOf(const QString &path, const QString &stream)
{
    const ToolAnswer answer = runTool(
        u"ffprobe"_s, {u"-v"_s, u"error"_s, u"-select_streams"_s, stream, u"-show_packets"_s,
                       u"-show_data_hash"_s, u"md5"_s, u"-show_entries"_s,
                       u"packet=pts_time,dts_time,data_hash"_s, u"-of"_s, u"csv=p=0"_s, path});
    return QString::fromUtf8(answer.output).split(u'\n', Qt::SkipEmptyParts);
}

}
