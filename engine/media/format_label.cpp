// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/media/media_info.h"
#include "platform/byte_count.h"

#include <QStringList>

namespace veltro {
namespace {

/// The number without its fraction; nothing when it does not fit a signed 64-bit integer.
std::optional<qint64> truncated(std::optional<double> number)
{
    constexpr double limit = 9223372036854775808.0; // 2^63
    if (!number || !(*number >= -limit && *number < limit)) {
        return std::nullopt;
    }
    return static_cast<qint64>(*number);
}

QString audioLabel(const Format &format)
{
    QString label = QStringLiteral("Audio • ") + format.ext + u' ';
    if (const auto kbps = truncated(format.bitrateKbps)) {
        label += QString::number(*kbps) + QStringLiteral(" kbps");
    }
    return label;
}

}

QString Format::label() const
{
    if (isAudioOnly) {
        return audioLabel(*this);
    }
    QStringList parts;
    if (resolution) {
        parts << *resolution;
    }
    if (const auto rate = truncated(fps); rate && *fps > 30.0) {
        parts << QString::number(*rate) + QStringLiteral("fps");
    }
    parts << ext;
    if (filesizeBytes) {
        parts << fileByteCount(*filesizeBytes);
    }
    return parts.join(QStringLiteral(" • "));
}

QString Subtitle::id() const
{
    return language + u'-' + ext;
}

}
