// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QObject>
#include <QStringList>
#include <QUrl>
#include <QUuid>

#include <memory>
#include <vector>

namespace veltro {

/// Keeps the program to one process for each user's session. The first start serves the others as
/// org.freedesktop.Application on the session bus; a later start hands it its links and leaves.
/// Without a session bus a socket in the user's run-time folder does the same. What is handed over
/// before the window is ready is kept until it is. Main thread only.
class SingleInstance : public QObject {
    Q_OBJECT
public:
    enum class Outcome {
        first,      ///< this is the one process: make the window, then say setReady()
        handedOver, ///< another took the links and comes to the front: leave
    };

    explicit SingleInstance(QObject *parent = nullptr);
    ~SingleInstance() override;

    /// Finds out which this start is. The links are addresses as they were handed to the program;
    /// what is no link of ours is dropped. May wait for the other process (10 s at most).
    [[nodiscard]] Outcome start(const QStringList &links);
    /// From now on, and for all that was kept, the signals below are emitted.
    void setReady();

    // What arrives from the bus or the socket.
    void take(const QStringList &links, const QString &activationToken);
    void takeSearch(const QString &text, const QString &activationToken);

Q_SIGNALS:
    /// Another start, or the desktop, wants the window in front; comes before what it brings. Where
    /// there is a token, the environment's XDG_ACTIVATION_TOKEN must have it when the window asks
    /// to be active.
    void activated(const QString &activationToken);
    /// An address of the program's scheme.
    void linkOpened(const QUrl &request);
    /// The library is to show this entry.
    void itemOpened(const QUuid &id);
    /// The library is to be searched for this text.
    void searchRequested(const QString &text);

private:
    struct Request {
        QList<QUrl> addresses;
        QString search;
        QString activationToken;
        bool isOwnStart = false;
    };
    void takeRequest(Request request);
    void deliver(const Request &request);

    bool m_isReady = false;
    std::vector<Request> m_kept; // until the window is ready
};

/// The token by which the window system lets this start bring a window to the front, or nothing.
[[nodiscard]] QString ownActivationToken();

}
