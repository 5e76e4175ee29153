// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/serial_queue.h"
#include "ui/player/mpv_library.h"

#include <QByteArray>
#include <QObject>

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <mutex>

namespace veltro::player {

/// Why nothing plays.
enum class PlayerError {
    cannotStart,    ///< the player's library is missing or does not start
    missing,        ///< no such file
    unreadable,     ///< not a file, or one that may not be read
    cannotBePlayed, ///< not media, or of a kind that is not played
};

/// What a core tells its item, always on the main thread.
class PlayerListener {
public:
    virtual ~PlayerListener() = default;
    virtual void coreStarted() = 0;
    /// Pictures can be drawn from here on; a file loaded before would play without any.
    virtual void canDraw() = 0;
    virtual void pictureChanged() = 0;
    virtual void eventsWaiting() = 0;
    virtual void loadRefused(std::uint64_t load, PlayerError why) = 0;
};

/// Reaches an object of the main thread from threads that may outlive it. Any thread.
class ListenerLink {
public:
    ListenerLink(QObject *context, PlayerListener *listener)
        : m_context(context), m_listener(listener)
    {}
    /// Queues the call to the main thread; nothing when the link is cut, or cut before its turn.
    void post(std::function<void(PlayerListener &)> call);
    /// Main thread: the listener is about to go.
    void cut();

private:
    std::mutex m_lock;
    QObject *m_context;         // guarded by m_lock
    PlayerListener *m_listener; // guarded by m_lock
};

/// One running player. Held by its item and by whoever draws its pictures, since they end at
/// different times on different threads; the last of them gone, it is taken down on a thread where
/// waiting does no harm. Nothing here waits for the player.
class PlayerCore {
public:
    /// Begins to start a player: loads the library and sets its options on the core's own queue.
    /// Main thread.
    [[nodiscard]] static std::shared_ptr<PlayerCore> start(QObject *context,
                                                           PlayerListener *listener);
    ~PlayerCore();
    PlayerCore(const PlayerCore &) = delete;
    PlayerCore &operator=(const PlayerCore &) = delete;

    [[nodiscard]] const std::shared_ptr<ListenerLink> &link() const;
    /// Where the core's slow work runs, in order.
    [[nodiscard]] SerialQueue &queue() const;

    // REQUIRES for all that follow: coreStarted() was called.
    [[nodiscard]] const MpvLibrary &library() const;
    [[nodiscard]] mpv_handle *handle() const;

    /// Looks at the file and has it played; the number comes back with the reply or the refusal.
    void load(QByteArray path, std::uint64_t load);
    void command(std::initializer_list<const char *> words, std::uint64_t reply = 0);
    void setFlag(const char *property, bool value);
    void setNumber(const char *property, double value);

    struct State;

private:
    PlayerCore(QObject *context, PlayerListener *listener);

    std::shared_ptr<State> m_state;
};

/// What is observed of a player; the number of each comes with its changes.
enum class Observed : std::uint64_t {
    position = 1,
    duration,
    paused,
    atEnd,
    width,
    height,
};

}
