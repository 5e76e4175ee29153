// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/service/download_options.h"

#include "engine/bridge/python.h"
#include "engine/selectors/format_selector.h"

#include <vector>

namespace veltro {
namespace {

PythonObject emptyDictionary()
{
    return Python().attr("dict").throwing().call({});
}

PythonObject audioExtraction(const DownloadRequest &request)
{
    PythonObject step = emptyDictionary();
    step.throwing().setItem("key", "FFmpegExtractAudio");
    step.throwing().setItem("preferredcodec", request.audioFormat.toStdString());
    step.throwing().setItem("preferredquality", "192");
    return step;
}

PythonObject folders(const std::string &path)
{
    PythonObject paths = emptyDictionary();
    paths.throwing().setItem("home", path);
    paths.throwing().setItem("temp", path);
    return paths;
}

std::vector<PythonObject> texts(const QStringList &list)
{
    std::vector<PythonObject> objects;
    for (const QString &text : list) {
        objects.emplace_back(text.toStdString());
    }
    return objects;
}

}

std::string downloadsPath(const DownloadRequest &request)
{
    QString path = request.downloadsDirectory.toLocalFile();
    while (path.size() > 1 && path.endsWith(u'/')) {
        path.chop(1);
    }
    return path.toStdString();
}

std::string templatePath(const DownloadRequest &request)
{
    return downloadsPath(request) + '/' + request.outputTemplate.toStdString();
}

PythonObject downloadOptions(const DownloadRequest &request, const PythonObject &progressHook,
                             const PythonObject &postprocessorHook)
{
    PythonObject dictionary = emptyDictionary();
    auto options = dictionary.throwing();
    options.setItem("outtmpl", templatePath(request));
    options.setItem("paths", folders(downloadsPath(request)));
    options.setItem("format", preferH264Selector(request.formatID).toStdString());
    options.setItem("merge_output_format", "mp4");
    options.setItem("progress_hooks", std::vector<PythonObject>{progressHook});
    options.setItem("postprocessor_hooks", std::vector<PythonObject>{postprocessorHook});
    options.setItem("noplaylist", true);
    options.setItem("writesubtitles", request.writeSubtitles);
    options.setItem("subtitleslangs", texts(request.subtitleLanguages));
    options.setItem("embedsubtitles", request.writeSubtitles);
    options.setItem("writethumbnail", true);
    options.setItem("quiet", false);
    options.setItem("no_warnings", false);
    options.setItem("verbose", true);
    options.setItem("overwrites", true);
    options.setItem("ffmpeg_location", "__veltro_ffmpeg__");
    if (request.cookiesFile) {
        options.setItem("cookiefile", request.cookiesFile->toLocalFile().toStdString());
    }
    if (request.extractAudio) {
        options.setItem("postprocessors", std::vector<PythonObject>{audioExtraction(request)});
    }
    return dictionary;
}

}
