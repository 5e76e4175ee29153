// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "engine/media/download_event.h"

#include <QString>

namespace veltro {

/// Shows a download to a person at a terminal: one line on standard error that is rewritten as
/// the download goes on, and the finished file's path on standard output. Main thread.
class ProgressLine {
public:
    void show(const DownloadEvent &event);
    void fail(const QString &text);

private:
    void rewrite(const QString &text);
    void endLine();

    qsizetype m_width = 0; // of what stands on the line, in characters
    QString m_title;
};

}
