// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QString>

namespace veltro {

// What the desktop knows the program by. The files in packaging/ carry the same names.

/// The name of the .desktop file, of the icon, and of the program on the session bus.
inline QString programIdentifier()
{
    return QStringLiteral("app.veltro.app");
}

/// Where the program's object is on the bus: its identifier as a path.
inline QString programObjectPath()
{
    return QStringLiteral("/app/veltro/app");
}

}
