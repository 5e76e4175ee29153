// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/byte_count.h"

#include <QLatin1String>

#include <array>

namespace veltro {
namespace {

struct Unit {
    const char *name;
    int digits;
};

constexpr std::array<Unit, 6> units{
    {{"KB", 0}, {"MB", 1}, {"GB", 2}, {"TB", 2}, {"PB", 2}, {"EB", 2}}};

QString withoutTrailingZeros(QString number)
{
    if (number.contains(u'.')) {
        while (number.endsWith(u'0')) {
            number.chop(1);
        }
        if (number.endsWith(u'.')) {
            number.chop(1);
        }
    }
    return number;
}

}

QString fileByteCount(qint64 bytes)
{
    if (bytes == 0) {
        return QStringLiteral("Zero KB");
    }
    const QString sign = bytes < 0 ? QStringLiteral("-") : QString();
    // Through quint64, since the smallest qint64 has no positive counterpart.
    const quint64 size =
        bytes < 0 ? quint64(0) - static_cast<quint64>(bytes) : static_cast<quint64>(bytes);
    if (size < 1000) {
        return sign + QString::number(size) +
               (size == 1 ? QStringLiteral(" byte") : QStringLiteral(" bytes"));
    }
    long double value = static_cast<long double>(size);
    QString text;
    for (const Unit &unit : units) {
        value /= 1000;
        const QString number = QString::number(static_cast<double>(value), 'f', unit.digits);
        text = withoutTrailingZeros(number) + u' ' + QLatin1String(unit.name);
        // A value that rounds to a thousand belongs to the next unit: 999,950 bytes are 1 MB.
        if (number.toDouble() < 1000) {
            break;
        }
    }
    return sign + text;
}

}
