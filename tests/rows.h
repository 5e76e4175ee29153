// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QString>
#include <QTest>

namespace veltro::test {

template <typename Value>
const Value &cell(const Value &value)
{
    return value;
}
inline QString cell(const char *text)
{
    return QString::fromUtf8(text);
}

/// Adds a row to the table of a test; a literal is a QString in it.
template <typename... Cells>
void row(const char *why, Cells... cells)
{
    QTestData &data = QTest::newRow(why);
    ((data << cell(cells)), ...);
}

}
