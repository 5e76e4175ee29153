// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/downloads/download_texts.h"

#include "platform/byte_count.h"

#include <QCoreApplication>
#include <QStringList>

namespace veltro {
namespace {

QString queueText(const char *source)
{
    return QCoreApplication::translate("Queue", source);
}

}

QString statusLabel(ItemState::Kind kind)
{
    switch (kind) {
    case ItemState::Kind::queued:
        return queueText("Queued");
    case ItemState::Kind::running:
        return queueText("Downloading");
    case ItemState::Kind::postProcessing:
        return queueText("Processing");
    case ItemState::Kind::done:
        return queueText("Done");
    case ItemState::Kind::failed:
        return queueText("Failed");
    case ItemState::Kind::cancelled:
        return queueText("Cancelled");
    }
    Q_UNREACHABLE();
}

QString hostText(const QUrl &page)
{
    const QString host = page.host();
    return host.isEmpty() ? page.toString() : host;
}

QString singleLine(QString text)
{
    for (QChar &character : text) {
        const QChar::Category category = character.category();
        if (category == QChar::Separator_Line || category == QChar::Separator_Paragraph ||
            category == QChar::Other_Control) {
            character = u' ';
        }
    }
    return text;
}

std::optional<qint64> wholeNumber(std::optional<double> number)
{
    constexpr double limit = 9223372036854775808.0; // 2^63
    if (!number || !(*number >= -limit && *number < limit)) {
        return std::nullopt;
    }
    return static_cast<qint64>(*number);
}

ProgressDetail progressDetail(const DownloadProgressState &record)
{
    ProgressDetail detail;
    const auto index = record.fragmentIndex();
    const auto count = record.fragmentCount();
    if (index && count && *count >= 1) {
        detail.position = queueText("Segment %1/%2").arg(*index).arg(*count);
    } else {
        detail.position = fileByteCount(record.bytesDone());
        if (const auto total = record.bytesTotal()) {
            detail.total = queueText("of %1").arg(fileByteCount(*total));
        }
    }
    if (const auto speed = wholeNumber(record.speedBytesPerSecond())) {
        detail.speed = fileByteCount(*speed) + QStringLiteral("/s");
    }
    const ItemState::Kind kind = record.state().kind;
    const bool isWaiting = kind == ItemState::Kind::queued || kind == ItemState::Kind::running;
    if (const auto seconds = wholeNumber(record.etaSeconds()); seconds && isWaiting) {
        detail.timeLeft = QStringLiteral("~%1s").arg(*seconds);
    }
    return detail;
}

QString spokenDescription(const DownloadProgressState &record)
{
    const ItemState &state = record.state();
    QStringList parts{statusLabel(state.kind)};
    if (!state.text.isEmpty()) {
        parts << state.text;
    }
    const ProgressDetail detail = progressDetail(record);
    const QString amount =
        detail.total.isEmpty() ? detail.position : detail.position + u' ' + detail.total;
    for (const QString &part : {amount, detail.speed, detail.timeLeft}) {
        if (!part.isEmpty()) {
            parts << part;
        }
    }
    parts << hostText(record.url());
    return parts.join(QStringLiteral(", "));
}

}
