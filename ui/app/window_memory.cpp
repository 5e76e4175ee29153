// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/app/window_memory.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace veltro {
namespace {

const auto windowKey = QStringLiteral("MainWindow");
constexpr int largestSide = 16384;

}

WindowMemory::WindowMemory(DefaultsStore store, QObject *parent)
    : QObject(parent), m_store(std::move(store))
{
    const QJsonObject stored =
        QJsonDocument::fromJson(m_store.data(windowKey).value_or(QByteArray())).object();
    const auto side = [&stored](const QString &name, int usual) {
        return std::clamp(stored.value(name).toInt(usual), 1, largestSide);
    };
    m_width = side(QStringLiteral("width"), m_width);
    m_height = side(QStringLiteral("height"), m_height);
    m_maximized = stored.value(QStringLiteral("maximized")).toBool(false);
    setSidebarWidth(side(QStringLiteral("sidebarWidth"), usualSidebar));
}

void WindowMemory::setSidebarWidth(int width)
{
    const int allowed = std::clamp(width, narrowestSidebar, widestSidebar);
    if (m_sidebarWidth != allowed) {
        m_sidebarWidth = allowed;
        Q_EMIT changed();
    }
}

void WindowMemory::save() const
{
    const QJsonObject stored{
        {QStringLiteral("width"), m_width},
        {QStringLiteral("height"), m_height},
        {QStringLiteral("maximized"), m_maximized},
        {QStringLiteral("sidebarWidth"), m_sidebarWidth},
    };
    m_store.setData(windowKey, QJsonDocument(stored).toJson(QJsonDocument::Compact));
}

}
