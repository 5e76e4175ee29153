// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/design/font_families.h"

#include <QFontDatabase>
#include <QGuiApplication>

namespace veltro {

FontFamilies::FontFamilies(QObject *parent) : QObject(parent)
{
    const auto orElse = [](const QString &family, const QString &other) {
        return QFontDatabase::hasFamily(family) ? family : other;
    };
    m_text = orElse(QStringLiteral("Inter"), QGuiApplication::font().family());
    m_display = orElse(QStringLiteral("Inter Display"), m_text);
}

}
