// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pasteboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace veltro {
namespace {

constexpr qsizetype longestPastedText = 8'000'000;

}

DesktopPasteboard::DesktopPasteboard(QObject *parent) : Pasteboard(parent)
{
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, &Pasteboard::changed);
}

std::optional<QString> DesktopPasteboard::text() const
{
    const QMimeData *const held = QGuiApplication::clipboard()->mimeData();
    if (!held || !held->hasText()) {
        return std::nullopt;
    }
    QString text = held->text();
    if (text.isEmpty() || text.size() > longestPastedText) {
        return std::nullopt;
    }
    return text;
}

void DesktopPasteboard::setText(const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
}

}
