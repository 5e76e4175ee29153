// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QByteArray>
#include <QCoro/QCoroTask>
#include <QStringList>

namespace veltro {

class YtDlpService;

/// Reads cookies with yt-dlp's readers, on the probe queue. Answers are the JSON of the module
/// veltro_ytdlp.cookie_import. Main thread only; the engine outlives what is asked.
class CookieReader {
public:
    explicit CookieReader(YtDlpService &engine) : m_engine(&engine) {}

    /// The profiles of installed browsers. @throws what a needed bootstrap throws, or PythonError.
    [[nodiscard]] QCoro::Task<QByteArray> browsers() const;
    /// The cookies that the hosts would receive, of the profile in the folder. @throws likewise.
    [[nodiscard]] QCoro::Task<QByteArray> fromBrowser(QString reader, QString folder,
                                                      QStringList hosts) const;
    /// The same, of a Netscape cookies.txt.
    [[nodiscard]] QCoro::Task<QByteArray> fromFile(QString file, QStringList hosts) const;

private:
    YtDlpService *m_engine;
};

}
