// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/platform/ffmpeg/runner_support.h"

#include <QFile>

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

QStringList wordsOf(const char *command)
{
    return QString::fromUtf8(command).split(u' ', Qt::SkipEmptyParts);
}

ToolAnswer runInProcess(const QStringList &arguments)
{
    const auto session = mediaTools().makeSession();
    const int code = session->run(argumentsOf(arguments));
    return {code, QByteArray::fromStdString(session->output()),
            QByteArray::fromStdString(session->log())};
}

QByteArray lastLineOf(const QByteArray &log)
{
    return log.trimmed().split('\n').last();
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
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
