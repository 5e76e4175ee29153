// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QDateTime>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace veltro {

/// How long ago a date was, or how far ahead it is, in the largest unit that fits: "now",
/// "5 minutes ago", "yesterday", "2 weeks ago", "next year". From a whole day on the calendar
/// counts, in the zone of `now`, so "yesterday" is the day before today. Empty for an invalid date.
[[nodiscard]] QString relativeDateText(const QDateTime &date, const QDateTime &now);

/// The distance of a date from the moment it was last asked for. Main thread only.
class RelativeDate : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QDateTime date READ date WRITE setDate NOTIFY textChanged)
    Q_PROPERTY(QString text READ text NOTIFY textChanged)
public:
    using QObject::QObject;

    [[nodiscard]] const QDateTime &date() const { return m_date; }
    void setDate(const QDateTime &date);
    [[nodiscard]] const QString &text() const { return m_text; }

public Q_SLOTS:
    /// Looks at the clock again.
    void refresh();

Q_SIGNALS:
    void textChanged();

private:
    QDateTime m_date;
    QString m_text;
};

}
