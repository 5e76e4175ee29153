// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QObject>
#include <QString>

#include <optional>

namespace veltro {

/// The plain text that the user copied last. Main thread only.
class Pasteboard : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    /// Nothing where no text is held, or more than anyone reads links from (8 million characters).
    [[nodiscard]] virtual std::optional<QString> text() const = 0;
    virtual void setText(const QString &text) = 0;

Q_SIGNALS:
    /// Something was copied, here or elsewhere. Where programs see the clipboard only while they
    /// have the focus, this comes a moment after the window became active.
    void changed();
};

/// The desktop's clipboard. Needs the application object.
class DesktopPasteboard final : public Pasteboard {
    Q_OBJECT
public:
    explicit DesktopPasteboard(QObject *parent = nullptr);

    [[nodiscard]] std::optional<QString> text() const override;
    void setText(const QString &text) override;
};

}
