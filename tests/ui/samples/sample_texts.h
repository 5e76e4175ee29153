// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QStringList>

namespace veltro {

/// Titles as pages have them: plain, long, right-to-left, with emoji, markup, bidi controls, breaks
/// of lines, and one of 10,000 characters.
[[nodiscard]] const QStringList &sampleTitles();

}
