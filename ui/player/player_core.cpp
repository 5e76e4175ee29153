// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/player_core.h"

#include "platform/ffmpeg/media_tools.h"
#include "platform/log.h"
#include "ui/player/player_options.h"

#include <QCoreApplication>
#include <QMetaObject>

#include <array>
#include <cerrno>
#include <clocale>
#include <exception>
#include <fcntl.h>
#include <optional>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace veltro::player {

void ListenerLink::post(std::function<void(PlayerListener &)> call)
{
    const std::scoped_lock guard(m_lock);
    if (!m_context) {
        return;
    }
    // The context's end drops the call, so the listener is there whenever it runs.
    QMetaObject::invokeMethod(
        m_context, [listener = m_listener, call = std::move(call)] { call(*listener); },
        Qt::QueuedConnection);
}

void ListenerLink::cut()
{
    const std::scoped_lock guard(m_lock);
    m_context = nullptr;
    m_listener = nullptr;
}

struct PlayerCore::State {
    State(QObject *context, PlayerListener *listener)
        : link(std::make_shared<ListenerLink>(context, listener))
    {}

    const std::shared_ptr<ListenerLink> link;
    SerialQueue queue{"com.veltro.player"};
    // Written on the queue before coreStarted() is posted, constant afterwards.
    const MpvLibrary *library = nullptr;
    mpv_handle *handle = nullptr;
    ffmpeg::MediaTools *tools = nullptr;
};

namespace {

SerialQueue &playerReaper();

// What the libraries need to end is gone soon after the application object.
void awaitPlayersEnds()
{
    playerReaper().sync([] {});
}

// Ending a player waits for its threads.
SerialQueue &playerReaper()
{
    static SerialQueue queue("com.veltro.player.end");
    static const bool isAwaited = (qAddPostRoutine(awaitPlayersEnds), true);
    static_cast<void>(isAwaited);
    return queue;
}

// Called on whatever thread of the player, which may not be called back here.
void onPlayerEvents(void *state)
{
    static_cast<PlayerCore::State *>(state)->link->post(
        [](PlayerListener &listener) { listener.eventsWaiting(); });
}

void observe(const MpvLibrary &library, mpv_handle *handle)
{
    const auto one = [&](Observed what, const char *property, mpv_format format) {
        library.observeProperty(handle, static_cast<std::uint64_t>(what), property, format);
    };
    one(Observed::position, "time-pos", MPV_FORMAT_DOUBLE);
    one(Observed::duration, "duration", MPV_FORMAT_DOUBLE);
    one(Observed::paused, "pause", MPV_FORMAT_FLAG);
    one(Observed::atEnd, "eof-reached", MPV_FORMAT_FLAG);
    one(Observed::width, "dwidth", MPV_FORMAT_INT64);
    one(Observed::height, "dheight", MPV_FORMAT_INT64);
}

// The player shares the FFmpeg libraries with runs that are under way, and at its start and at its
// end takes the one log that they have.
void startOrThrow(PlayerCore::State &state)
{
    ffmpeg::MediaTools &tools = ffmpeg::mediaTools();
    state.library = mpvLibrary();
    mpv_handle *handle = state.library ? state.library->create() : nullptr;
    tools.keepLog();
    if (!handle) {
        throw std::runtime_error("the player's library is missing or does not start");
    }
    if (!setOptions(*state.library, handle, tools.localDemuxers()) ||
        state.library->initialize(handle) < 0) {
        state.library->terminateDestroy(handle);
        tools.keepLog();
        throw std::runtime_error("the player does not take its options");
    }
    state.tools = &tools;
    state.handle = handle;
    observe(*state.library, handle);
    state.library->setWakeupCallback(handle, onPlayerEvents, &state);
}

void startPlayer(PlayerCore::State &state)
{
    try {
        startOrThrow(state);
        state.link->post([](PlayerListener &to) { to.coreStarted(); });
    } catch (const std::exception &error) {
        logLine(LogTag::engine, std::string("player: ") + error.what());
        state.link->post([](PlayerListener &to) { to.loadRefused(0, PlayerError::cannotStart); });
    }
}

// Opened rather than asked for its type alone, since a name may stand for a pipe that never
// answers, and a file may be there and not readable.
std::optional<PlayerError> whyNotReadable(const QByteArray &path)
{
    const int file = ::open(path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (file < 0) {
        return errno == ENOENT || errno == ENOTDIR ? PlayerError::missing : PlayerError::unreadable;
    }
    struct stat status {};
    const bool isFile = ::fstat(file, &status) == 0 && S_ISREG(status.st_mode);
    ::close(file);
    return isFile ? std::nullopt : std::optional(PlayerError::unreadable);
}

void commandNow(const PlayerCore::State &state, std::initializer_list<const char *> words,
                std::uint64_t reply)
{
    std::vector<const char *> arguments(words);
    arguments.push_back(nullptr);
    state.library->commandAsync(state.handle, reply, arguments.data());
}

}

PlayerCore::PlayerCore(QObject *context, PlayerListener *listener)
    : m_state(std::make_shared<State>(context, listener))
{}

std::shared_ptr<PlayerCore> PlayerCore::start(QObject *context, PlayerListener *listener)
{
    // The library refuses to start where numbers are written with a comma. The application object
    // takes the user's locale over, so this comes after it, and on the thread that made it.
    std::setlocale(LC_NUMERIC, "C");
    std::shared_ptr<PlayerCore> core(new PlayerCore(context, listener));
    core->m_state->queue.async([state = core->m_state.get()] { startPlayer(*state); });
    return core;
}

PlayerCore::~PlayerCore()
{
    playerReaper().async([state = std::move(m_state)] {
        state->queue.sync([] {}); // the drawing that is still under way ends first
        if (state->handle) {
            state->library->terminateDestroy(state->handle);
            state->tools->keepLog();
        }
    });
}

const std::shared_ptr<ListenerLink> &PlayerCore::link() const
{
    return m_state->link;
}

SerialQueue &PlayerCore::queue() const
{
    return m_state->queue;
}

const MpvLibrary &PlayerCore::library() const
{
    return *m_state->library;
}

mpv_handle *PlayerCore::handle() const
{
    return m_state->handle;
}

void PlayerCore::load(QByteArray path, std::uint64_t load)
{
    m_state->queue.async([state = m_state.get(), path = std::move(path), load] {
        if (const auto why = whyNotReadable(path)) {
            state->link->post([=](PlayerListener &to) { to.loadRefused(load, *why); });
            commandNow(*state, {"stop"}, 0);
            return;
        }
        int paused = 0;
        state->library->setPropertyAsync(state->handle, 0, "pause", MPV_FORMAT_FLAG, &paused);
        commandNow(*state, {"loadfile", path.constData(), "replace"}, load);
    });
}

void PlayerCore::command(std::initializer_list<const char *> words, std::uint64_t reply)
{
    commandNow(*m_state, words, reply);
}

void PlayerCore::setFlag(const char *property, bool value)
{
    int flag = value ? 1 : 0;
    m_state->library->setPropertyAsync(m_state->handle, 0, property, MPV_FORMAT_FLAG, &flag);
}

void PlayerCore::setNumber(const char *property, double value)
{
    m_state->library->setPropertyAsync(m_state->handle, 0, property, MPV_FORMAT_DOUBLE, &value);
}

}
