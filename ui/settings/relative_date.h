// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QDateTime>
#include <QString>

namespace veltro {

/// How long ago a date was, or how far ahead it is, in the largest unit that fits: "now",
/// "5 minutes ago", "yesterday", "2 weeks ago", "next year". From a whole day on the calendar
/// counts, in the zone of `now`, so "yesterday" is the day before today. Empty for an invalid date.
[[nodiscard]] QString relativeDateText(const QDateTime &date, const QDateTime &now);

}
