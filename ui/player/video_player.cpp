// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/video_player.h"

#include "ui/player/player_texts.h"
#include "ui/player/software_picture.h"

#include <QFile>
#include <QQuickWindow>

#include <algorithm>
#include <cmath>
#include <utility>

namespace veltro::player {
namespace {

// The numbers that replies carry: small ones for what needs no telling apart, then one a load.
constexpr std::uint64_t seekReply = 1;
constexpr std::uint64_t firstLoad = 1000;
constexpr double playerVolumePerUnit = 100;

std::int64_t entryOf(const mpv_event_command &reply)
{
    if (reply.result.format != MPV_FORMAT_NODE_MAP) {
        return 0;
    }
    const mpv_node_list &list = *reply.result.u.list;
    for (int i = 0; i < list.num; ++i) {
        if (std::string_view(list.keys[i]) == "playlist_entry_id") {
            return list.values[i].u.int64;
        }
    }
    return 0;
}

template <typename Value>
Value valueOf(const mpv_event_property &property, mpv_format format, Value absent)
{
    return property.format == format ? *static_cast<const Value *>(property.data) : absent;
}

}

VideoPlayer::VideoPlayer(QQuickItem *parent) : QQuickItem(parent), m_load(firstLoad)
{
    setFlag(ItemHasContents);
}

VideoPlayer::~VideoPlayer()
{
    if (m_core) {
        m_core->link()->cut();
        if (m_started) {
            // The sound ends now and not when the last picture is let go of.
            m_core->command({"stop"});
        }
    }
}

template <typename Value>
void VideoPlayer::assign(Value &field, const Value &value, void (VideoPlayer::*changed)())
{
    if (field != value) {
        field = value;
        Q_EMIT(this->*changed)();
    }
}

QString VideoPlayer::errorText() const
{
    return m_status == Status::Failed ? description(m_error) : QString();
}

void VideoPlayer::setUrl(const QUrl &url)
{
    if (m_url == url) {
        return;
    }
    m_url = url;
    forgetFile();
    ++m_load;
    Q_EMIT urlChanged();
    if (!url.isEmpty() && !url.isLocalFile()) {
        fail(PlayerError::cannotBePlayed);
    } else {
        setStatus(url.isEmpty() ? Status::Empty : Status::Loading);
    }
    if (m_status == Status::Loading) {
        ensureCore();
        load();
    } else if (m_canDraw) {
        m_core->command({"stop"});
    }
}

void VideoPlayer::ensureCore()
{
    if (!m_core) {
        m_core = PlayerCore::start(this, this);
    }
}

void VideoPlayer::coreStarted()
{
    m_started = true;
    m_core->setNumber("volume", m_volume * playerVolumePerUnit);
    m_core->setFlag("mute", m_muted);
    update(); // the scene's next synchronisation makes what draws
}

void VideoPlayer::canDraw()
{
    m_canDraw = true;
    if (!m_fileIsOpen) {
        load();
        return;
    }
    // What drew before is gone, and with it the output of the picture's track: the track begins
    // again, which it does only after having been put away.
    m_core->command({"set", "vid", "no"});
    m_core->command({"set", "vid", "auto"});
}

void VideoPlayer::load()
{
    if (m_canDraw && m_status == Status::Loading) {
        m_core->load(QFile::encodeName(m_url.toLocalFile()), m_load);
    }
}

void VideoPlayer::forgetFile()
{
    m_fileIsOpen = false;
    m_entry = 0;
    m_nextSeek.reset();
    assign(m_seekInFlight, false, &VideoPlayer::seekingChanged);
    assign(m_position, 0.0, &VideoPlayer::positionChanged);
    assign(m_duration, 0.0, &VideoPlayer::durationChanged);
    assign(m_videoSize, QSize(0, 0), &VideoPlayer::videoSizeChanged);
    assign(m_atEnd, false, &VideoPlayer::atEndChanged);
    assign(m_paused, false, &VideoPlayer::pausedChanged);
}

void VideoPlayer::setStatus(Status status)
{
    assign(m_status, status, &VideoPlayer::statusChanged);
}

void VideoPlayer::fail(PlayerError why)
{
    m_error = why;
    if (m_status == Status::Failed) {
        Q_EMIT statusChanged(); // another text
    }
    setStatus(Status::Failed);
}

void VideoPlayer::loadRefused(std::uint64_t load, PlayerError why)
{
    const bool concernsEveryFile = load == 0;
    if (m_status == Status::Loading && (concernsEveryFile || load == m_load)) {
        forgetFile();
        fail(why);
    }
}

void VideoPlayer::eventsWaiting()
{
    while (m_core) {
        const mpv_event &event = *m_core->library().waitEvent(m_core->handle(), 0);
        if (event.event_id == MPV_EVENT_NONE) {
            return;
        }
        handle(event);
    }
}

void VideoPlayer::handle(const mpv_event &event)
{
    switch (event.event_id) {
    case MPV_EVENT_COMMAND_REPLY:
        handleReply(event);
        break;
    case MPV_EVENT_START_FILE: {
        const auto &start = *static_cast<const mpv_event_start_file *>(event.data);
        m_fileIsOpen = m_entry != 0 && start.playlist_entry_id == m_entry;
        break;
    }
    case MPV_EVENT_FILE_LOADED:
        if (m_fileIsOpen) {
            setStatus(Status::Ready);
        }
        break;
    case MPV_EVENT_END_FILE:
        handleEnd(*static_cast<const mpv_event_end_file *>(event.data));
        break;
    case MPV_EVENT_PROPERTY_CHANGE:
        if (m_fileIsOpen) {
            handleProperty(Observed{event.reply_userdata},
                           *static_cast<const mpv_event_property *>(event.data));
        }
        break;
    default:
        break;
    }
}

void VideoPlayer::handleReply(const mpv_event &event)
{
    if (event.reply_userdata == m_load) {
        m_entry =
            event.error < 0 ? 0 : entryOf(*static_cast<const mpv_event_command *>(event.data));
        if (m_entry == 0) {
            fail(PlayerError::cannotBePlayed);
        }
        return;
    }
    if (event.reply_userdata == seekReply && m_seekInFlight) {
        if (const auto next = std::exchange(m_nextSeek, std::nullopt)) {
            sendSeek(*next);
        } else {
            assign(m_seekInFlight, false, &VideoPlayer::seekingChanged);
        }
    }
}

void VideoPlayer::handleEnd(const mpv_event_end_file &end)
{
    if (m_entry == 0 || end.playlist_entry_id != m_entry) {
        return;
    }
    m_fileIsOpen = false;
    if (end.reason == MPV_END_FILE_REASON_ERROR) {
        forgetFile();
        fail(PlayerError::cannotBePlayed);
    } else {
        assign(m_atEnd, true, &VideoPlayer::atEndChanged);
        assign(m_paused, true, &VideoPlayer::pausedChanged);
    }
}

void VideoPlayer::handleProperty(Observed what, const mpv_event_property &property)
{
    switch (what) {
    case Observed::position:
        if (property.format == MPV_FORMAT_DOUBLE && !m_seekInFlight) {
            assign(m_position, std::max(0.0, valueOf(property, MPV_FORMAT_DOUBLE, 0.0)),
                   &VideoPlayer::positionChanged);
        }
        break;
    case Observed::duration:
        assign(m_duration, std::max(0.0, valueOf(property, MPV_FORMAT_DOUBLE, 0.0)),
               &VideoPlayer::durationChanged);
        break;
    case Observed::paused:
        assign(m_paused, valueOf(property, MPV_FORMAT_FLAG, 0) != 0, &VideoPlayer::pausedChanged);
        break;
    case Observed::atEnd:
        assign(m_atEnd, valueOf(property, MPV_FORMAT_FLAG, 0) != 0, &VideoPlayer::atEndChanged);
        break;
    case Observed::width:
    case Observed::height: {
        const auto pixels = static_cast<int>(valueOf<std::int64_t>(property, MPV_FORMAT_INT64, 0));
        QSize size = m_videoSize;
        what == Observed::width ? size.setWidth(pixels) : size.setHeight(pixels);
        assign(m_videoSize, size, &VideoPlayer::videoSizeChanged);
        fitPicture();
        break;
    }
    }
}

void VideoPlayer::play()
{
    if (m_status != Status::Ready) {
        return;
    }
    if (!m_fileIsOpen) { // the player has closed it at its end
        const QUrl again = m_url;
        setUrl({});
        setUrl(again);
        return;
    }
    if (m_atEnd) {
        seek(0);
    }
    m_core->setFlag("pause", false);
}

void VideoPlayer::pause()
{
    if (m_status == Status::Ready && m_fileIsOpen) {
        m_core->setFlag("pause", true);
    }
}

void VideoPlayer::togglePlaying()
{
    if (m_paused || m_atEnd) {
        play();
    } else {
        pause();
    }
}

void VideoPlayer::seek(double seconds)
{
    if (m_status != Status::Ready || !m_fileIsOpen || !std::isfinite(seconds)) {
        return;
    }
    const double end = m_duration > 0 ? m_duration : seconds;
    const double target = std::clamp(seconds, 0.0, std::max(0.0, end));
    if (m_seekInFlight) {
        m_nextSeek = target;
    } else {
        sendSeek(target);
    }
    assign(m_position, target, &VideoPlayer::positionChanged);
}

void VideoPlayer::seekBy(double seconds)
{
    seek(m_position + seconds);
}

void VideoPlayer::sendSeek(double seconds)
{
    const QByteArray target = QByteArray::number(seconds, 'f', 3);
    m_core->command({"seek", target.constData(), "absolute+exact"}, seekReply);
    assign(m_seekInFlight, true, &VideoPlayer::seekingChanged);
}

void VideoPlayer::fillScreen(bool fills)
{
    if (!window()) {
        return;
    }
    if (fills) {
        m_statesBefore = window()->windowStates() & ~Qt::WindowFullScreen;
        window()->setWindowStates(m_statesBefore | Qt::WindowFullScreen);
    } else if (window()->windowStates() & Qt::WindowFullScreen) {
        window()->setWindowStates(m_statesBefore);
    }
}

void VideoPlayer::setVolume(double volume)
{
    assign(m_volume, std::clamp(std::isfinite(volume) ? volume : 1.0, 0.0, 1.0),
           &VideoPlayer::volumeChanged);
    if (m_started) {
        m_core->setNumber("volume", m_volume * playerVolumePerUnit);
    }
}

void VideoPlayer::setMuted(bool muted)
{
    assign(m_muted, muted, &VideoPlayer::mutedChanged);
    if (m_started) {
        m_core->setFlag("mute", m_muted);
    }
}

}
