// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/about_information.h"

#include "platform/bundle.h"

#include <utility>

namespace veltro {
namespace {

// Read once; it is asked for by the menus, the settings and the about panel.
const BundleInformation &ownInformation()
{
    static const BundleInformation information = BundleInformation::of(Bundle::main().root());
    return information;
}

}

AboutInformation::AboutInformation(QObject *parent) : AboutInformation(ownInformation(), parent) {}

AboutInformation::AboutInformation(BundleInformation information, QObject *parent)
    : QObject(parent), m_information(std::move(information))
{}

QString AboutInformation::version() const
{
    const QString &version = m_information.shortVersion;
    return version.isEmpty() ? QStringLiteral("0.1.0") : version;
}

}
