// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/app/window_memory.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QScreen>

#include <algorithm>

namespace veltro {
namespace {

const auto windowKey = QStringLiteral("MainWindow");
constexpr int largestSide = 16384;
// Of a title bar and borders, before the window manager has told what it draws.
constexpr QSize usualFrame(12, 40);

QSize sizeWithin(const QWindow &window, QSize wanted, QSize frame)
{
    return wanted.boundedTo(window.screen()->availableGeometry().size() - frame)
        .expandedTo(window.minimumSize());
}

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

void WindowMemory::restore(QWindow *window) const
{
    window->resize(sizeWithin(*window, {m_width, m_height}, usualFrame));
}

void WindowMemory::keepOnScreen(QWindow &window)
{
    if (window.windowStates() != Qt::WindowNoState) {
        return; // the desktop has settled its place
    }
    const QMargins margins = window.frameMargins();
    const QSize frame(margins.left() + margins.right(), margins.top() + margins.bottom());
    const QSize size = sizeWithin(window, window.size(), frame);
    if (size != window.size()) {
        window.resize(size);
    }
    const QRect screen = window.screen()->availableGeometry();
    QRect place(window.framePosition(), size + frame);
    place.moveRight(std::min(place.right(), screen.right()));
    place.moveBottom(std::min(place.bottom(), screen.bottom()));
    place.moveLeft(std::max(place.left(), screen.left()));
    place.moveTop(std::max(place.top(), screen.top()));
    if (place.topLeft() != window.framePosition()) {
        window.setFramePosition(place.topLeft());
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
