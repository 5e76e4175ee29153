// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QString>
#include <QStringList>

namespace veltro {

/// The codes as the settings show them: "en, nl, es".
[[nodiscard]] QString languagesText(const QStringList &languages);

/// The codes of a typed text, in order: what stands between the commas, without blanks and tabs
/// around it; empty pieces are dropped and nothing else is checked.
[[nodiscard]] QStringList languagesOf(const QString &text);

}
