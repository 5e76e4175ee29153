// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QPoint>
#include <QProcess>
#include <QSize>
#include <QStringList>

#include <memory>

class QWindow;

namespace veltro {

/// An X display of the test's own with a window manager, where windows are real: they have the
/// focus, OpenGL, a pointer, and other programs beside them. Made before the application object,
/// which then is an X client of this display, and ends after it. A display that does not come up
/// ends the test program.
class PrivateDisplay {
public:
    explicit PrivateDisplay(QSize size = {1366, 768});
    ~PrivateDisplay();
    PrivateDisplay(const PrivateDisplay &) = delete;
    PrivateDisplay &operator=(const PrivateDisplay &) = delete;

    /// Pointer and keys, in the words of xdotool. Returns when they are sent; events are handled
    /// meanwhile.
    void act(const QStringList &words) const;
    /// Moves the pointer there, by a way of several steps as a hand does.
    void movePointer(QPoint to) const;
    void press() const { act({QStringLiteral("mousedown"), QStringLiteral("1")}); }
    void release() const { act({QStringLiteral("mouseup"), QStringLiteral("1")}); }

private:
    QProcess m_server;
    QProcess m_windowManager;
};

/// Another program on the display (other_program.cpp says what it does); it tells what happens to
/// it line by line. Needs the application object.
class OtherProgram {
public:
    explicit OtherProgram(const QStringList &arguments);
    ~OtherProgram();
    OtherProgram(const OtherProgram &) = delete;
    OtherProgram &operator=(const OtherProgram &) = delete;

    /// Waits for a line that begins so; the rest of it. Fails the running test when none comes.
    QByteArray next(const QByteArray &beginning);

private:
    QProcess m_process;
    QList<QByteArray> m_lines;
};

/// The middle of what the window shows, on the display.
[[nodiscard]] QPoint middleOf(const QWindow &window);

}
