// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/bundle_information.h"
#include "platform/defaults_store.h"
#include "platform/update_feed.h"
#include "platform/update_installer.h"

#include <QNetworkAccessManager>
#include <QObject>
#include <QTimer>

#include <memory>
#include <optional>

namespace veltro {

class SerialQueue;
class UpdateDownload;

/// Keeps a copy of the program that the user owns up to date. Asks the feed that the bundle names,
/// by itself once a day (or as the bundle says) and whenever the user asks; takes only what the
/// makers signed. A new bundle is fetched and prepared while the program runs, and put in place
/// when it ends or is started anew. Main thread only.
///
/// A check that the program made by itself says nothing unless there is something new that the user
/// has not skipped; its failures go to the log.
class UpdateManager : public QObject {
    Q_OBJECT
    Q_PROPERTY(veltro::UpdateManager::State state READ state NOTIFY stateChanged)
    /// The version on offer, and what it brings (plain text).
    Q_PROPERTY(QString version READ version NOTIFY stateChanged)
    Q_PROPERTY(QString notes READ notes NOTIFY stateChanged)
    Q_PROPERTY(QString currentVersion READ currentVersion CONSTANT)
    /// What the window says in this state.
    Q_PROPERTY(QString message READ message NOTIFY stateChanged)
    /// Whether install() can do something, in the state available.
    Q_PROPERTY(bool canInstall READ canInstall NOTIFY stateChanged)
    /// Of the archive, 0 to 1.
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged)
    /// The window with all this is to be shown.
    Q_PROPERTY(bool isShown READ isShown NOTIFY isShownChanged)
public:
    enum class State {
        idle,
        unmanaged, ///< no feed: updates come from where the program was installed
        checking,
        upToDate,
        available,
        downloading,
        preparing, ///< the archive is there and is unpacked
        ready,     ///< is put in place at the end of the program
        failed,
    };
    Q_ENUM(State)

    /// For the program's own bundle; begins to check as the bundle says.
    explicit UpdateManager(QObject *parent = nullptr);
    /// What was seen before is kept in the defaults.
    UpdateManager(std::filesystem::path bundleRoot, DefaultsStore defaults,
                  QObject *parent = nullptr);
    ~UpdateManager() override;

    [[nodiscard]] State state() const { return m_state; }
    [[nodiscard]] QString version() const;
    [[nodiscard]] QString notes() const;
    [[nodiscard]] QString currentVersion() const { return m_information.shortVersion; }
    [[nodiscard]] QString message() const { return m_message; }
    [[nodiscard]] bool canInstall() const;
    [[nodiscard]] double progress() const { return m_progress; }
    [[nodiscard]] bool isShown() const { return m_isShown; }

    /// The user's own check, always allowed; shows the window. While something is under way it only
    /// shows that.
    Q_INVOKABLE void checkForUpdates();
    /// What the program does by itself when it is time.
    void checkByItself();

    /// Fetches and prepares the version on offer.
    Q_INVOKABLE void install();
    /// Never offers this version by itself again.
    Q_INVOKABLE void skip();
    /// Closes the window; a download goes on.
    Q_INVOKABLE void later();
    /// Puts a prepared version in place; the old one stays when that fails. Also done when the
    /// program ends.
    Q_INVOKABLE void finish();
    /// Ends the program, puts a prepared version in place and starts it. A window that will not
    /// close keeps the program running, and the wish stands until somebody calls stay().
    Q_INVOKABLE void relaunch();
    Q_INVOKABLE void stay() { m_isRelaunching = false; }
    [[nodiscard]] bool isRelaunching() const { return m_isRelaunching; }

Q_SIGNALS:
    void stateChanged();
    void progressChanged();
    void isShownChanged();

private:
    enum class Asker { user, program };
    struct Memory; // what is kept across launches

    void end();
    void scheduleNextCheck();
    void check(Asker asker);
    void takeFeed(const QString &failure);
    void offer(const Update &update);
    void takeArchive(const QString &failure);
    void takePrepared(const QString &failure);
    void fail(const QString &what);
    void enter(State state, const QString &message);
    void show(bool isShown);
    [[nodiscard]] Memory memory() const;
    void remember(const Memory &memory);

    const std::filesystem::path m_root;
    const DefaultsStore m_defaults;
    const BundleInformation m_information;
    State m_state = State::idle;
    QString m_message;
    Asker m_asker = Asker::program;
    bool m_isShown = false;
    bool m_isRelaunching = false;
    double m_progress = 0;
    std::optional<Update> m_update;
    QNetworkAccessManager m_network;
    QTimer m_nextCheck;
    std::unique_ptr<UpdateDownload> m_download;
    std::unique_ptr<UpdateInstaller> m_installer;
    std::unique_ptr<SerialQueue> m_unpacking; // ends before the installer that it uses
};

}
