// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/veltro-engine/progress_line.h"

#include "platform/byte_count.h"

#include <QStringList>

#include <cstdio>
#include <variant>

namespace veltro {
namespace {

/// A title comes from a page: no control character of it may reach the terminal.
QString printable(QString text)
{
    for (QChar &c : text) {
        if (!c.isPrint()) {
            c = u' ';
        }
    }
    return text;
}

QString describe(const DownloadProgressed &progress)
{
    QStringList parts;
    if (progress.bytesTotal && *progress.bytesTotal > 0) {
        parts << QString::number(100 * progress.bytesDone / *progress.bytesTotal) + u'%';
        parts << fileByteCount(progress.bytesDone) + QStringLiteral(" of ") +
                     fileByteCount(*progress.bytesTotal);
    } else {
        parts << fileByteCount(progress.bytesDone);
    }
    if (progress.speed) {
        parts << fileByteCount(static_cast<qint64>(*progress.speed)) + QStringLiteral("/s");
    }
    return parts.join(QStringLiteral(", "));
}

}

void ProgressLine::show(const DownloadEvent &event)
{
    if (const auto *started = std::get_if<DownloadStarted>(&event)) {
        m_title = printable(started->info.title);
        rewrite(m_title);
    } else if (const auto *progress = std::get_if<DownloadProgressed>(&event)) {
        rewrite(m_title + QStringLiteral(": ") + describe(*progress));
    } else if (const auto *step = std::get_if<DownloadPostProcessing>(&event)) {
        rewrite(m_title + QStringLiteral(": ") + printable(step->stage));
    } else if (const auto *finished = std::get_if<DownloadFinished>(&event)) {
        rewrite(m_title + QStringLiteral(": saved"));
        endLine();
        std::printf("%s\n", qPrintable(printable(finished->fileURL.toLocalFile())));
        std::fflush(stdout);
    }
}

void ProgressLine::fail(const QString &text)
{
    endLine();
    std::fprintf(stderr, "%s\n", qPrintable(printable(text)));
}

void ProgressLine::rewrite(const QString &text)
{
    const QString line = text.left(120);
    const qsizetype leftOver = qMax<qsizetype>(0, m_width - line.size());
    std::fprintf(stderr, "\r%s%s", qPrintable(line), qPrintable(QString(leftOver, u' ')));
    std::fflush(stderr);
    m_width = line.size();
}

void ProgressLine::endLine()
{
    if (m_width > 0) {
        std::fputc('\n', stderr);
        m_width = 0;
    }
}

}
