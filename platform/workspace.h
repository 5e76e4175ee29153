// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QString>
#include <QStringList>
#include <QUrl>

#include <functional>

namespace veltro {

/// What the desktop does on the program's behalf: files and pages in other programs, sounds.
/// Main thread only; every operation returns at once.
class Workspace {
public:
    Workspace() = default;
    virtual ~Workspace() = default;
    Workspace(const Workspace &) = delete;
    Workspace &operator=(const Workspace &) = delete;

    /// Opens a local file with its default program. A program, a script or a .desktop file is
    /// never opened. Whether the file was handed over.
    virtual bool open(const QUrl &file) = 0;
    /// Shows local files in the file manager, selected; the folder where that cannot be done.
    virtual void reveal(const QList<QUrl> &files) = 0;
    void reveal(const QUrl &file) { reveal(QList<QUrl>{file}); }
    /// Opens an http or https address in the browser. Whether it was handed over.
    virtual bool openWebPage(const QUrl &page) = 0;
    /// The alert sound.
    virtual void beep() = 0;
    /// The tick that a hand feels, where a machine can make it.
    virtual void haptic() = 0;
};

/// The user's desktop. What it starts sees the environment that this process was started with, and
/// nothing that was set for the interpreter since.
class DesktopWorkspace final : public Workspace {
public:
    /// Starts a program with what it is given, on its own; whether it was found.
    using Launcher = std::function<bool(const QString &program, const QStringList &arguments)>;

    DesktopWorkspace();
    explicit DesktopWorkspace(Launcher launcher);

    bool open(const QUrl &file) override;
    using Workspace::reveal;
    void reveal(const QList<QUrl> &files) override;
    bool openWebPage(const QUrl &page) override;
    void beep() override;
    /// Nothing: desktops have no such device.
    void haptic() override {}

private:
    [[nodiscard]] bool hand(const QUrl &url) const;
    void openFolderOf(const QUrl &file) const;

    const Launcher m_launch;
};

/// Whether opening the file would only show it: no program, script, installer or .desktop file,
/// neither by its name nor by what it holds.
[[nodiscard]] bool isSafeToOpen(const QString &file);

}
