// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/relative_date.h"

#include <QCoreApplication>
#include <QTimeZone>

#include <algorithm>

namespace veltro {
namespace {

/// One unit with its names: for one, for many, and for one step back and ahead where it has any.
struct Unit {
    const char *one;
    const char *many;
    const char *previous;
    const char *next;
};

constexpr Unit second{"1 second", "%1 seconds", nullptr, nullptr};
constexpr Unit minute{"1 minute", "%1 minutes", nullptr, nullptr};
constexpr Unit hour{"1 hour", "%1 hours", nullptr, nullptr};
constexpr Unit day{"1 day", "%1 days", "yesterday", "tomorrow"};
constexpr Unit week{"1 week", "%1 weeks", "last week", "next week"};
constexpr Unit month{"1 month", "%1 months", "last month", "next month"};
constexpr Unit year{"1 year", "%1 years", "last year", "next year"};

QString dateText(const char *source)
{
    return QCoreApplication::translate("RelativeDate", source);
}

QString phrase(const Unit &unit, qint64 count, bool isPast)
{
    if (count == 1 && unit.previous) {
        return dateText(isPast ? unit.previous : unit.next);
    }
    const QString amount = count == 1 ? dateText(unit.one) : dateText(unit.many).arg(count);
    return (isPast ? dateText("%1 ago") : dateText("in %1")).arg(amount);
}

/// The whole months between two days, the earlier one first.
qint64 monthsBetween(QDate earlier, QDate later)
{
    qint64 months = (later.year() - earlier.year()) * 12 + later.month() - earlier.month();
    while (months > 0 && earlier.addMonths(static_cast<int>(months)) > later) {
        --months;
    }
    return months;
}

QString longPhrase(QDate earlier, QDate later, bool isPast)
{
    const qint64 months = monthsBetween(earlier, later);
    if (months >= 12) {
        return phrase(year, months / 12, isPast);
    }
    if (months >= 1) {
        return phrase(month, months, isPast);
    }
    const qint64 days = earlier.daysTo(later);
    return days >= 7 ? phrase(week, days / 7, isPast) : phrase(day, days, isPast);
}

}

QString relativeDateText(const QDateTime &date, const QDateTime &now)
{
    if (!date.isValid() || !now.isValid()) {
        return {};
    }
    const QDateTime then = date.toTimeZone(now.timeZone());
    const bool isPast = then <= now;
    const auto [earlier, later] = std::minmax(then, now);
    const qint64 seconds = earlier.msecsTo(later) / 1000;
    if (seconds == 0) {
        return dateText("now");
    }
    if (seconds < 60) {
        return phrase(second, seconds, isPast);
    }
    if (seconds < 3600) {
        return phrase(minute, seconds / 60, isPast);
    }
    if (seconds < 24 * 3600) {
        return phrase(hour, seconds / 3600, isPast);
    }
    return longPhrase(earlier.date(), later.date(), isPast);
}

void RelativeDate::setDate(const QDateTime &date)
{
    if (m_date != date) {
        m_date = date;
        refresh();
    }
}

void RelativeDate::refresh()
{
    const QString text = relativeDateText(m_date, QDateTime::currentDateTime());
    if (m_text != text) {
        m_text = text;
        Q_EMIT textChanged();
    }
}

}
