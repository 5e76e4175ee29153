// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/types/desktop.h"

#include "platform/pasteboard.h"
#include "platform/workspace.h"
#include "ui/design/field_paste.h"

namespace veltro {
namespace {

Desktop *&desktopOfTheProgram()
{
    static Desktop *desktop = nullptr;
    return desktop;
}

}

void setDesktop(Desktop *desktop)
{
    desktopOfTheProgram() = desktop;
    setFieldPasteboard(desktop ? &desktop->pasteboard() : nullptr);
}

Desktop::Desktop(Workspace &workspace, Pasteboard &pasteboard, QObject *parent)
    : QObject(parent), m_workspace(workspace), m_pasteboard(pasteboard)
{}

Desktop *Desktop::create(QQmlEngine *, QJSEngine *)
{
    Q_ASSERT(desktopOfTheProgram() != nullptr);
    QJSEngine::setObjectOwnership(desktopOfTheProgram(), QJSEngine::CppOwnership);
    return desktopOfTheProgram();
}

bool Desktop::open(const QUrl &file)
{
    return m_workspace.open(file);
}

void Desktop::reveal(const QUrl &file)
{
    m_workspace.reveal(file);
}

bool Desktop::openWebPage(const QUrl &page)
{
    return m_workspace.openWebPage(page);
}

void Desktop::copy(const QString &text)
{
    m_pasteboard.setText(text);
}

void Desktop::readPasteboard(const QJSValue &then)
{
    m_pasteboard.read(Pasteboard::Use::links, this, [then](const std::optional<QString> &text) {
        if (text) {
            then.call({QJSValue(*text)});
        }
    });
}

}
