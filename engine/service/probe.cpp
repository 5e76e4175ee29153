// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/service/probe.h"

#include "engine/bridge/python.h"
#include "engine/service/engine_error.h"
#include "engine/service/engine_messages.h"
#include "engine/service/engine_state.h"

namespace veltro {
namespace {

PythonObject probeOptions(const std::optional<QUrl> &cookies)
{
    PythonObject options = Python().attr("dict").throwing().call({});
    options.throwing().setItem("quiet", true);
    options.throwing().setItem("no_warnings", true);
    options.throwing().setItem("skip_download", true);
    if (cookies) {
        options.throwing().setItem("cookiefile", cookies->toLocalFile().toStdString());
    }
    return options;
}

MediaInfo extract(const PythonObject &ytDlp, const QUrl &url, const std::optional<QUrl> &cookies)
{
    const PythonObject downloader =
        ytDlp.throwing().attr("YoutubeDL").throwing().call({probeOptions(cookies)});
    const std::string address = url.toString(QUrl::FullyEncoded).toStdString();
    const PythonObject info = downloader.throwing()
                                  .attr("extract_info")
                                  .throwing()
                                  .call({address}, {{"download", false}});
    return MediaInfo::parse(downloader.throwing().attr("sanitize_info").throwing().call({info}));
}

}

MediaInfo probePage(const EngineState &state, const QUrl &url, const std::optional<QUrl> &cookies)
{
    const std::optional<PythonObject> ytDlp = state.ytDlpModule();
    if (!ytDlp) {
        throw EngineError::bootstrapFailed(QStringLiteral("yt_dlp not imported"));
    }
    try {
        return extract(*ytDlp, url, cookies);
    } catch (const std::exception &error) {
        throw EngineError::probeFailed(cleanEngineMessage(error));
    }
}

}
