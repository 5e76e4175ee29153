// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "coordination/coordinator.h"
#include "platform/updater.h"
#include "ui/app/window_memory.h"
#include "ui/home/home_model.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace veltro {

/// What the main window shows, put into a state to look at. The engine behind it is never begun,
/// and the desktop only keeps what it is told. Main thread.
class SampleProgram : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(veltro::MacAppStore *store READ store CONSTANT)
    Q_PROPERTY(veltro::HomeModel *home READ home CONSTANT)
    Q_PROPERTY(veltro::WindowMemory *memory READ memory CONSTANT)
    Q_PROPERTY(veltro::UpdateManager *updates READ updates CONSTANT)
public:
    explicit SampleProgram(QObject *parent = nullptr);
    ~SampleProgram() override;

    [[nodiscard]] MacAppStore *store() { return &m_store; }
    [[nodiscard]] HomeModel *home() { return &m_home; }
    [[nodiscard]] WindowMemory *memory() { return &m_memory; }
    [[nodiscard]] UpdateManager *updates() { return &m_updates; }

    /// Puts that many sample downloads into the queue.
    Q_INVOKABLE void queue(int size);
    /// Copies a text in another program.
    Q_INVOKABLE void copy(const QString &text);
    /// Shows the items of the gallery's library as the ones saved last.
    Q_INVOKABLE void showRecents();
    /// Says that the engine has failed.
    Q_INVOKABLE void failWith(const QString &message);
    /// Asks for a format; the request of a SampleRequest.
    Q_INVOKABLE void ask(const QVariant &request);
    Q_INVOKABLE void toast(const QString &started, const QString &completed);

private:
    MacAppStore m_store;
    HomeModel m_home;
    WindowMemory m_memory;
    UpdateManager m_updates;
};

}
