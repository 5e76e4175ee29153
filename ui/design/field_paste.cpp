// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/design/field_paste.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QRegularExpression>

namespace veltro {
namespace {

Pasteboard *&fieldPasteboard()
{
    static Pasteboard *pasteboard = nullptr;
    return pasteboard;
}

QString inOneLine(QString text)
{
    static const QRegularExpression outer(QStringLiteral("^\\R+|\\R+$"));
    static const QRegularExpression inner(QStringLiteral("\\R+"));
    return text.remove(outer).replace(inner, QStringLiteral(" "));
}

}

void setFieldPasteboard(Pasteboard *pasteboard)
{
    fieldPasteboard() = pasteboard;
}

void FieldPaste::setField(QQuickItem *field)
{
    if (m_field == field) {
        return;
    }
    m_field = field;
    if (m_field) {
        m_field->installEventFilter(this);
        // Each field asks whoever copies something whether it is a text, and waits for the answer.
        disconnect(QGuiApplication::clipboard(), &QClipboard::dataChanged, m_field, nullptr);
    }
    Q_EMIT fieldChanged();
}

bool FieldPaste::eventFilter(QObject *watched, QEvent *event)
{
    const std::optional<Pasteboard::Use> use = wantedBy(*event);
    if (!use) {
        return QObject::eventFilter(watched, event);
    }
    event->accept();
    fieldPasteboard()->read(*use, this, [this](const std::optional<QString> &text) {
        if (text) {
            insert(*text);
        }
    });
    return true;
}

std::optional<Pasteboard::Use> FieldPaste::wantedBy(const QEvent &event) const
{
    if (!fieldPasteboard() || !m_field || m_field->property("readOnly").toBool()) {
        return std::nullopt;
    }
    const auto copied = m_takesLines ? Pasteboard::Use::links : Pasteboard::Use::link;
    // Elsewhere the window system has no text that is pasted by being marked.
    const bool hasMarked = QGuiApplication::platformName() == QLatin1String("xcb");
    if (event.type() == QEvent::KeyPress) {
        const auto &key = static_cast<const QKeyEvent &>(event);
        if (!key.matches(QKeySequence::Paste)) {
            return std::nullopt;
        }
        const bool isMarked = key.key() == Qt::Key_Insert &&
                              key.modifiers().testFlag(Qt::ControlModifier) && hasMarked;
        return isMarked ? Pasteboard::Use::marked : copied;
    }
    if (event.type() == QEvent::MouseButtonRelease && hasMarked &&
        static_cast<const QMouseEvent &>(event).button() == Qt::MiddleButton) {
        QMetaObject::invokeMethod(m_field, "deselect"); // the press has put the caret there
        return Pasteboard::Use::marked;
    }
    return std::nullopt;
}

// As if it were typed: what is selected goes, undo brings it back, and the field's limits hold.
void FieldPaste::insert(const QString &text) const
{
    if (m_field) {
        QInputMethodEvent typed;
        typed.setCommitString(m_takesLines ? text : inOneLine(text));
        QCoreApplication::sendEvent(m_field, &typed);
    }
}

}
