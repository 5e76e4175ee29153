// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "ui/player/player_core.h"

#include <QQuickItem>
#include <QSize>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <memory>
#include <optional>

namespace veltro::player {

class SoftwarePicture;

/// Plays a local file in place: its picture, letterboxed on black, and its sound. Playing starts at
/// once, and again with each other file. Whatever takes time runs on threads of the player, so that
/// no call here waits. Main thread.
class VideoPlayer : public QQuickItem, private PlayerListener {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QUrl url READ url WRITE setUrl NOTIFY urlChanged)
    Q_PROPERTY(Status status READ status NOTIFY statusChanged)
    Q_PROPERTY(QString errorText READ errorText NOTIFY statusChanged)
    Q_PROPERTY(bool paused READ isPaused NOTIFY pausedChanged)
    Q_PROPERTY(bool atEnd READ isAtEnd NOTIFY atEndChanged)
    Q_PROPERTY(bool seeking READ isSeeking NOTIFY seekingChanged)
    Q_PROPERTY(double positionSeconds READ positionSeconds NOTIFY positionChanged)
    Q_PROPERTY(double durationSeconds READ durationSeconds NOTIFY durationChanged)
    Q_PROPERTY(QSize videoSize READ videoSize NOTIFY videoSizeChanged)
    Q_PROPERTY(double volume READ volume WRITE setVolume NOTIFY volumeChanged)
    Q_PROPERTY(bool muted READ isMuted WRITE setMuted NOTIFY mutedChanged)

public:
    enum class Status {
        Empty,   ///< no file
        Loading, ///< being opened
        Ready,   ///< playing, paused or at its end
        Failed,  ///< errorText says why
    };
    Q_ENUM(Status)

    explicit VideoPlayer(QQuickItem *parent = nullptr);
    ~VideoPlayer() override;

    [[nodiscard]] const QUrl &url() const { return m_url; }
    /// The same file again changes nothing.
    void setUrl(const QUrl &url);
    [[nodiscard]] Status status() const { return m_status; }
    [[nodiscard]] QString errorText() const;
    [[nodiscard]] bool isPaused() const { return m_paused; }
    [[nodiscard]] bool isAtEnd() const { return m_atEnd; }
    /// A seek was asked for and has not been reached.
    [[nodiscard]] bool isSeeking() const { return m_seekInFlight; }
    [[nodiscard]] double positionSeconds() const { return m_position; }
    /// 0 while it is not known.
    [[nodiscard]] double durationSeconds() const { return m_duration; }
    /// 0 by 0 for a file without a picture.
    [[nodiscard]] QSize videoSize() const { return m_videoSize; }
    /// 0 to 1.
    [[nodiscard]] double volume() const { return m_volume; }
    void setVolume(double volume);
    [[nodiscard]] bool isMuted() const { return m_muted; }
    void setMuted(bool muted);

    /// Goes on, or begins again at the end.
    Q_INVOKABLE void play();
    Q_INVOKABLE void pause();
    Q_INVOKABLE void togglePlaying();
    /// Seeks that come faster than the player follows are taken together; the last one holds.
    Q_INVOKABLE void seek(double seconds);
    Q_INVOKABLE void seekBy(double seconds);
    /// Makes the window as large as the screen, or what it was before.
    Q_INVOKABLE void fillScreen(bool fills);

Q_SIGNALS:
    void urlChanged();
    void statusChanged();
    void pausedChanged();
    void atEndChanged();
    void seekingChanged();
    void positionChanged();
    void durationChanged();
    void videoSizeChanged();
    void volumeChanged();
    void mutedChanged();

protected:
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *data) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void releaseResources() override;

private:
    void coreStarted() override;
    void canDraw() override;
    void pictureChanged() override { update(); }
    void eventsWaiting() override;
    void loadRefused(std::uint64_t load, PlayerError why) override;

    void ensureCore();
    void load();
    void forgetFile();
    void handle(const mpv_event &event);
    void handleReply(const mpv_event &event);
    void handleEnd(const mpv_event_end_file &end);
    void handleProperty(Observed what, const mpv_event_property &property);
    void sendSeek(double seconds);
    void setStatus(Status status);
    void fail(PlayerError why);
    template <typename Value>
    void assign(Value &field, const Value &value, void (VideoPlayer::*changed)());

    [[nodiscard]] QSize pixelSize() const;
    void fitPicture();
    QSGNode *openGLNode(QSGNode *old);
    QSGNode *softwareNode(QSGNode *old);

    std::shared_ptr<PlayerCore> m_core;
    std::unique_ptr<SoftwarePicture> m_software; // only in windows without OpenGL
    bool m_started = false;
    bool m_canDraw = false;
    bool m_fileIsOpen = false; // its values are those of the current file

    QUrl m_url;
    std::uint64_t m_load;     // the number of the newest load; the replies of others are stale
    std::int64_t m_entry = 0; // what the player calls the file of that load; 0 before its reply
    std::optional<double> m_nextSeek; // what a seek in flight has been overtaken by
    bool m_seekInFlight = false;

    Status m_status = Status::Empty;
    PlayerError m_error = PlayerError::cannotStart;
    bool m_paused = false;
    bool m_atEnd = false;
    double m_position = 0;
    double m_duration = 0;
    QSize m_videoSize{0, 0}; // which no size made by default is
    double m_volume = 1;
    Qt::WindowStates m_statesBefore; // of the window that fills the screen
    bool m_muted = false;
};

}
