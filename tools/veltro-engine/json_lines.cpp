// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/veltro-engine/json_lines.h"

#include "engine/runtime/task_cancelled.h"
#include "engine/service/engine_error.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <cstdio>
#include <variant>

namespace veltro {
namespace {

void insert(QJsonObject &object, const char *key, const std::optional<QString> &value)
{
    if (value) {
        object.insert(QLatin1String(key), *value);
    }
}

void insert(QJsonObject &object, const char *key, const std::optional<QUrl> &value)
{
    if (value) {
        object.insert(QLatin1String(key), value->toString(QUrl::FullyEncoded));
    }
}

void insert(QJsonObject &object, const char *key, const std::optional<double> &value)
{
    if (value) {
        object.insert(QLatin1String(key), *value);
    }
}

void insert(QJsonObject &object, const char *key, const std::optional<qint64> &value)
{
    if (value) {
        object.insert(QLatin1String(key), *value);
    }
}

QJsonObject formatToJson(const Format &format)
{
    QJsonObject object{{QStringLiteral("id"), format.id},
                       {QStringLiteral("ext"), format.ext},
                       {QStringLiteral("isAudioOnly"), format.isAudioOnly},
                       {QStringLiteral("isVideoOnly"), format.isVideoOnly},
                       {QStringLiteral("label"), format.label()}};
    insert(object, "resolution", format.resolution);
    insert(object, "fps", format.fps);
    insert(object, "vcodec", format.vcodec);
    insert(object, "acodec", format.acodec);
    insert(object, "bitrateKbps", format.bitrateKbps);
    insert(object, "filesizeBytes", format.filesizeBytes);
    insert(object, "note", format.note);
    return object;
}

QJsonObject subtitleToJson(const Subtitle &subtitle)
{
    QJsonObject object{{QStringLiteral("id"), subtitle.id()},
                       {QStringLiteral("language"), subtitle.language},
                       {QStringLiteral("ext"), subtitle.ext},
                       {QStringLiteral("isAutomatic"), subtitle.isAutomatic}};
    insert(object, "url", subtitle.url);
    return object;
}

template <typename Records, typename Convert>
QJsonArray toArray(const Records &records, Convert convert)
{
    QJsonArray array;
    for (const auto &record : records) {
        array.append(convert(record));
    }
    return array;
}

QJsonObject eventNamed(const char *name)
{
    return {{QStringLiteral("event"), QLatin1String(name)}};
}

QJsonObject startedToJson(const DownloadStarted &event)
{
    QJsonObject object = eventNamed("started");
    object.insert(QStringLiteral("info"), toJson(event.info));
    return object;
}

QJsonObject progressToJson(const DownloadProgressed &event)
{
    QJsonObject object = eventNamed("progress");
    object.insert(QStringLiteral("bytesDone"), event.bytesDone);
    insert(object, "bytesTotal", event.bytesTotal);
    insert(object, "speed", event.speed);
    insert(object, "eta", event.eta);
    insert(object, "fragmentIndex", event.fragmentIndex);
    insert(object, "fragmentCount", event.fragmentCount);
    return object;
}

QJsonObject postProcessingToJson(const DownloadPostProcessing &event)
{
    QJsonObject object = eventNamed("postProcessing");
    object.insert(QStringLiteral("stage"), event.stage);
    return object;
}

QJsonObject finishedToJson(const DownloadFinished &event)
{
    QJsonObject object = eventNamed("finished");
    object.insert(QStringLiteral("file"), event.fileURL.toLocalFile());
    return object;
}

struct EventToJson {
    QJsonObject operator()(const DownloadStarted &event) const { return startedToJson(event); }
    QJsonObject operator()(const DownloadProgressed &event) const { return progressToJson(event); }
    QJsonObject operator()(const DownloadPostProcessing &event) const
    {
        return postProcessingToJson(event);
    }
    QJsonObject operator()(const DownloadFinished &event) const { return finishedToJson(event); }
};

QJsonObject errorNamed(const QString &kind, const QString &text)
{
    QJsonObject object = eventNamed("error");
    object.insert(QStringLiteral("kind"), kind);
    object.insert(QStringLiteral("text"), text);
    return object;
}

}

QJsonObject toJson(const MediaInfo &info)
{
    QJsonObject object{
        {QStringLiteral("id"), info.id},
        {QStringLiteral("title"), info.title},
        {QStringLiteral("isPlaylist"), info.isPlaylist},
        {QStringLiteral("formats"), toArray(info.formats, formatToJson)},
        {QStringLiteral("subtitles"), toArray(info.subtitles, subtitleToJson)},
        {QStringLiteral("playlistEntries"),
         toArray(info.playlistEntries, [](const MediaInfo &entry) { return toJson(entry); })}};
    insert(object, "uploader", info.uploader);
    insert(object, "durationSeconds", info.durationSeconds);
    insert(object, "thumbnailURL", info.thumbnailURL);
    insert(object, "webpageURL", info.webpageURL);
    insert(object, "extractor", info.extractor);
    return object;
}

QJsonObject toJson(const DownloadEvent &event)
{
    return std::visit(EventToJson(), event);
}

QJsonObject errorToJson(const std::exception_ptr &error)
{
    try {
        std::rethrow_exception(error);
    } catch (const EngineError &failure) {
        return errorNamed(failure.kindName(), failure.description());
    } catch (const TaskCancelled &) {
        return errorNamed(QStringLiteral("cancelled"), QStringLiteral("Cancelled."));
    } catch (const std::exception &failure) {
        return errorNamed(QStringLiteral("other"), QString::fromUtf8(failure.what()));
    }
}

void printJsonLine(const QJsonObject &object)
{
    const QByteArray line = QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
    std::fwrite(line.constData(), 1, static_cast<std::size_t>(line.size()), stdout);
    std::fflush(stdout);
}

}
