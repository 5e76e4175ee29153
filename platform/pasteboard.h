// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace veltro {

class SerialQueue;

/// The plain text that the user copied last. Main thread only.
class Pasteboard : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    /// Nothing where no text is held, or more than anyone reads links from (8 million characters).
    [[nodiscard]] virtual std::optional<QString> text() const = 0;

    /// How long a text is of use.
    enum class Use {
        link,  ///< one address: 64 thousand characters
        links, ///< as many as anyone pastes at once: a million
        /// As long as a link, but what is marked: X11 pastes it by the middle button, uncopied.
        marked,
    };
    using Reply = std::function<void(const std::optional<QString> &text)>;
    /// Reads the text without waiting for the program that holds it; nothing when it is longer than
    /// that. Replies once, perhaps before this returns, unless the context is gone by then.
    virtual void read(Use use, QObject *context, const Reply &reply);
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

    ~DesktopPasteboard() override;

    [[nodiscard]] std::optional<QString> text() const override;
    void read(Use use, QObject *context, const Reply &reply) override;
    void setText(const QString &text) override;

private:
    std::unique_ptr<SerialQueue> m_reading; // made on first use
};

}
