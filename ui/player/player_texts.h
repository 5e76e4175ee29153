// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace veltro::player {

enum class PlayerError;

/// The sentence that is shown in place of the picture.
[[nodiscard]] QString description(PlayerError error);

/// Rounded down to whole seconds: minutes and seconds, with hours in front from one hour on.
/// Empty when it is not a finite number; what lies before 0 counts as 0.
[[nodiscard]] QString durationText(double seconds);

/// The same for people who hear it: "1 hour 2 minutes 3 seconds".
[[nodiscard]] QString spokenDuration(double seconds);

/// The two for QML.
class PlayerTexts : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    Q_INVOKABLE static QString duration(double seconds) { return durationText(seconds); }
    Q_INVOKABLE static QString spoken(double seconds) { return spokenDuration(seconds); }
};

}
