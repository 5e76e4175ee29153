// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/pasteboard.h"

#include <QObject>
#include <QPointer>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace veltro {

/// Pastes into a text field, by key and by the middle button, without waiting for the program that
/// holds the text, and no more of it than is of use. The field's own way holds the window up for as
/// long as that program likes. Main thread.
class FieldPaste : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickItem *field READ field WRITE setField NOTIFY fieldChanged REQUIRED)
    /// For many links: more is taken, and lines stay lines.
    Q_PROPERTY(bool takesLines MEMBER m_takesLines NOTIFY fieldChanged)
public:
    using QObject::QObject;

    [[nodiscard]] QQuickItem *field() const { return m_field; }
    void setField(QQuickItem *field);

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void fieldChanged();

private:
    /// What the event wants pasted, if anything.
    [[nodiscard]] std::optional<Pasteboard::Use> wantedBy(const QEvent &event) const;
    void insert(const QString &text) const;

    QPointer<QQuickItem> m_field;
    bool m_takesLines = false;
};

/// What fields paste from. While there is none, they paste in their own way.
void setFieldPasteboard(Pasteboard *pasteboard);

}
