// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pasteboard.h"

#include "platform/serial_queue.h"
#include "platform/x11_clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QPointer>

namespace veltro {
namespace {

constexpr qsizetype longestPastedText = 8'000'000;
// A program that needs longer is stuck.
constexpr std::chrono::seconds longestReading(2);

qsizetype longestOf(Pasteboard::Use use)
{
    switch (use) {
    case Pasteboard::Use::link:
    case Pasteboard::Use::marked:
        return 64 * 1024;
    case Pasteboard::Use::links:
        return 1'000'000;
    }
    Q_UNREACHABLE();
}

std::optional<QString> heldText(QClipboard::Mode mode)
{
    const QMimeData *const held = QGuiApplication::clipboard()->mimeData(mode);
    if (!held || !held->hasText()) {
        return std::nullopt;
    }
    QString text = held->text();
    if (text.isEmpty() || text.size() > longestPastedText) {
        return std::nullopt;
    }
    return text;
}

void answer(const Pasteboard::Reply &reply, Pasteboard::Use use, std::optional<QString> held)
{
    if (held && held->size() > longestOf(use)) {
        held.reset();
    }
    reply(held);
}

}

void Pasteboard::read(Use use, QObject *, const Reply &reply)
{
    answer(reply, use, text());
}

DesktopPasteboard::DesktopPasteboard(QObject *parent) : Pasteboard(parent)
{
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, &Pasteboard::changed);
}

DesktopPasteboard::~DesktopPasteboard() = default;

void DesktopPasteboard::read(Use use, QObject *context, const Reply &reply)
{
    // What we hold ourselves is at hand, and Wayland gives it to nobody but the window system's own
    // connection.
    const bool isX11 = QGuiApplication::platformName() == QLatin1String("xcb");
    const QClipboard &clipboard = *QGuiApplication::clipboard();
    const bool isMarked = use == Use::marked;
    if (!isX11 || (isMarked ? clipboard.ownsSelection() : clipboard.ownsClipboard())) {
        answer(reply, use, heldText(isMarked ? QClipboard::Selection : QClipboard::Clipboard));
        return;
    }
    if (!m_reading) {
        m_reading = std::make_unique<SerialQueue>("com.veltro.clipboard");
    }
    m_reading->async([longest = longestOf(use), context = QPointer(context), reply,
                      selection = isMarked ? X11Selection::marked : X11Selection::copied] {
        // UTF-8 has at most three bytes for each of a text's units.
        std::optional<QString> held = readX11Clipboard(selection, 3 * longest, longestReading);
        if (held && (held->isEmpty() || held->size() > longest)) {
            held.reset();
        }
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [context, reply, held] {
                if (context) {
                    reply(held);
                }
            },
            Qt::QueuedConnection);
    });
}

std::optional<QString> DesktopPasteboard::text() const
{
    return heldText(QClipboard::Clipboard);
}

void DesktopPasteboard::setText(const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
}

}
