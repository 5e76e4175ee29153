// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QString>
#include <QVariantMap>

namespace veltro {

/// Shows an entry of the library in the program, which is started where it is not running.
/// The start's data (an activation token, a start-up id) lets it come to the front.
void openInProgram(const QString &identifier, const QVariantMap &startData);

/// Shows the program's library searched for a text.
void searchInProgram(const QString &text, const QVariantMap &startData);

}
