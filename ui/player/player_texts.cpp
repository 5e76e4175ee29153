// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/player_texts.h"

#include "ui/player/player_core.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>
#include <cmath>

namespace veltro::player {
namespace {

constexpr qint64 secondsPerMinute = 60;
constexpr qint64 secondsPerHour = 3600;
// Longer than anything that plays, and far from where the arithmetic would overflow.
constexpr double longestSeconds = 1e12;

struct Clock {
    qint64 hours;
    qint64 minutes;
    qint64 seconds;
};

Clock clockOf(double seconds)
{
    const auto whole = static_cast<qint64>(std::floor(std::clamp(seconds, 0.0, longestSeconds)));
    return {whole / secondsPerHour, whole % secondsPerHour / secondsPerMinute,
            whole % secondsPerMinute};
}

QString playerText(const char *text)
{
    return QCoreApplication::translate("player", text);
}

}

QString description(PlayerError error)
{
    switch (error) {
    case PlayerError::cannotStart:
        return playerText("The player could not be started.");
    case PlayerError::missing:
        return playerText("The file is no longer there.");
    case PlayerError::unreadable:
        return playerText("The file cannot be read.");
    case PlayerError::cannotBePlayed:
        return playerText("This file cannot be played.");
    }
    Q_UNREACHABLE();
}

QString durationText(double seconds)
{
    if (!std::isfinite(seconds)) {
        return {};
    }
    const Clock clock = clockOf(seconds);
    if (clock.hours == 0) {
        return QString::asprintf("%lld:%02lld", clock.minutes, clock.seconds);
    }
    return QString::asprintf("%lld:%02lld:%02lld", clock.hours, clock.minutes, clock.seconds);
}

QString spokenDuration(double seconds)
{
    if (!std::isfinite(seconds)) {
        return {};
    }
    const Clock clock = clockOf(seconds);
    QStringList parts;
    const auto add = [&](qint64 count, const char *one, const char *many) {
        if (count > 0) {
            parts.append(QString::number(count) + u' ' + playerText(count == 1 ? one : many));
        }
    };
    add(clock.hours, "hour", "hours");
    add(clock.minutes, "minute", "minutes");
    add(clock.seconds, "second", "seconds");
    return parts.isEmpty() ? playerText("0 seconds") : parts.join(u' ');
}

}
