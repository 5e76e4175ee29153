// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QString>
#include <QTest>

namespace veltro::test {

inline void addCell(QTestData &data, const char *text)
{
    data << QString::fromUtf8(text);
}
template <typename Value>
void addCell(QTestData &data, const Value &value)
{
    data << value;
}

/// Adds a row to the table of a test; a literal is a QString in it.
template <typename... Cells>
void row(const char *why, Cells... cells)
{
    QTestData &data = QTest::newRow(why);
    (addCell(data, cells), ...);
}

}
