// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "coordination/active_downloads.h"
#include "coordination/completion.h"
#include "coordination/format_pick_request.h"
#include "coordination/network_monitor.h"
#include "coordination/preferences.h"

#include <QCoro/QCoroTask>
#include <QPointer>

namespace veltro {

class CompletionNotifier;
class DownloadStorage;
class Pasteboard;
class Workspace;
class YtDlpService;
struct DownloadRequest;

/// What the banner says of a finished download.
struct CompletedToast {
    Q_GADGET
    Q_PROPERTY(QUuid id MEMBER id)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QUrl fileURL MEMBER fileURL)
public:
    QUuid id; ///< of the download
    QString title;
    QUrl fileURL;

    bool operator==(const CompletedToast &) const = default;
};

/// The program's state, and the life of every download: from a link to a probe, a format, a place
/// in the queue, a run, and the library. Runs go one at a time, in the order queued. One exists
/// for the life of the process; every screen observes it. Main thread only.
///
/// A property notifies when its value changes, and only then. An operation that waits is a task;
/// the begin… forms start it with nobody waiting. Cancelling is a flag of the run under way, here
/// and in the engine; a download that waits is skipped when its turn comes.
class MacAppStore : public QObject {
    Q_OBJECT
    Q_PROPERTY(veltro::MacAppStore::MacTab selectedTab READ selectedTab WRITE setSelectedTab NOTIFY
                   selectedTabChanged)
    Q_PROPERTY(veltro::ActiveDownloads *activeDownloads READ activeDownloads CONSTANT)
    Q_PROPERTY(bool hasPendingFormatPick READ hasPendingFormatPick NOTIFY pendingFormatPickChanged)
    Q_PROPERTY(veltro::FormatPickRequest pendingFormatPick READ pendingFormatPickValue NOTIFY
                   pendingFormatPickChanged)
    Q_PROPERTY(veltro::Preferences preferences READ preferences WRITE setPreferences NOTIFY
                   preferencesChanged)
    Q_PROPERTY(QString engineError READ engineErrorText NOTIFY engineErrorChanged)
    Q_PROPERTY(bool showEngineError READ showEngineError WRITE setShowEngineError NOTIFY
                   showEngineErrorChanged)
    Q_PROPERTY(bool engineReady READ engineReady NOTIFY engineReadyChanged)
    Q_PROPERTY(veltro::NetworkMonitor *network READ network CONSTANT)
    Q_PROPERTY(bool showBatchPaste READ showBatchPaste WRITE setShowBatchPaste NOTIFY
                   showBatchPasteChanged)
    Q_PROPERTY(bool hasStartedToast READ hasStartedToast NOTIFY startedToastChanged)
    Q_PROPERTY(QString startedToast READ startedToastText NOTIFY startedToastChanged)
    Q_PROPERTY(bool hasCompletedToast READ hasCompletedToast NOTIFY completedToastChanged)
    Q_PROPERTY(
        veltro::CompletedToast completedToast READ completedToastValue NOTIFY completedToastChanged)
public:
    /// The tabs of the main window, in their order.
    enum class MacTab { home, downloads, library, settings };
    Q_ENUM(MacTab)

    using Record = ActiveDownloads::Record;

    /// What the coordinator works with; all of it outlives the coordinator.
    struct Services {
        YtDlpService &engine;
        DownloadStorage &storage;
        CompletionNotifier &notifier;
        Workspace &workspace;
        Pasteboard &pasteboard;
        std::function<bool()> isApplicationActive;
    };

    explicit MacAppStore(Services services, QObject *parent = nullptr);
    /// Cancels the run under way; what waits ends without effect.
    ~MacAppStore() override;

    [[nodiscard]] MacTab selectedTab() const { return m_selectedTab; }
    void setSelectedTab(MacTab tab);
    [[nodiscard]] ActiveDownloads *activeDownloads() { return &m_activeDownloads; }
    /// The format picker is open while there is one.
    [[nodiscard]] const std::optional<FormatPickRequest> &pendingFormatPick() const
    {
        return m_pendingFormatPick;
    }
    [[nodiscard]] bool hasPendingFormatPick() const { return m_pendingFormatPick.has_value(); }
    [[nodiscard]] FormatPickRequest pendingFormatPickValue() const
    {
        return m_pendingFormatPick.value_or(FormatPickRequest());
    }
    void setPendingFormatPick(const std::optional<FormatPickRequest> &request);
    Q_INVOKABLE void clearPendingFormatPick() { setPendingFormatPick(std::nullopt); }
    [[nodiscard]] const Preferences &preferences() const { return m_preferences; }
    /// Does not save them.
    void setPreferences(const Preferences &preferences);
    [[nodiscard]] const std::optional<QString> &engineError() const { return m_engineError; }
    [[nodiscard]] QString engineErrorText() const { return m_engineError.value_or(QString()); }
    void setEngineError(const std::optional<QString> &text);
    [[nodiscard]] bool showEngineError() const { return m_showEngineError; }
    void setShowEngineError(bool show);
    [[nodiscard]] bool engineReady() const { return m_engineReady; }
    [[nodiscard]] NetworkMonitor *network() { return &m_network; }
    [[nodiscard]] bool showBatchPaste() const { return m_showBatchPaste; }
    void setShowBatchPaste(bool show);
    /// The title of the download that has begun, while its banner is up.
    [[nodiscard]] const std::optional<QString> &startedToast() const { return m_startedToast; }
    [[nodiscard]] bool hasStartedToast() const { return m_startedToast.has_value(); }
    [[nodiscard]] QString startedToastText() const { return m_startedToast.value_or(QString()); }
    void setStartedToast(const std::optional<QString> &title);
    Q_INVOKABLE void clearStartedToast() { setStartedToast(std::nullopt); }
    [[nodiscard]] const std::optional<CompletedToast> &completedToast() const
    {
        return m_completedToast;
    }
    [[nodiscard]] bool hasCompletedToast() const { return m_completedToast.has_value(); }
    [[nodiscard]] CompletedToast completedToastValue() const
    {
        return m_completedToast.value_or(CompletedToast());
    }
    void setCompletedToast(const std::optional<CompletedToast> &toast);
    Q_INVOKABLE void clearCompletedToast() { setCompletedToast(std::nullopt); }

    /// The end of the run that was queued last; come already while none ever was.
    [[nodiscard]] const std::shared_ptr<Completion> &inFlightTask() const { return m_inFlightTask; }
    [[nodiscard]] int activeCount() const { return m_activeDownloads.activeCount(); }
    [[nodiscard]] int finishedCount() const { return m_activeDownloads.finishedCount(); }

    /// Warms the engine up ahead of the first link; alerts when it cannot be started.
    [[nodiscard]] QCoro::Task<void> startEngine();
    /// Probes the page and asks the user for a format; alerts when that fails.
    [[nodiscard]] QCoro::Task<void> submitLink(QUrl url);
    /// Submits the link on the pasteboard; what is not one is ignored.
    [[nodiscard]] QCoro::Task<void> pasteAndSave();
    /// Probes the page as a check, then queues it with this selector; alerts when that fails.
    [[nodiscard]] QCoro::Task<void> startDownload(QUrl url, QString formatID);
    /// Queues a download.
    [[nodiscard]] QCoro::Task<void> completeFormatPick(QUrl url, Format format);
    /// Probes again and queues anew, in the same format where the page still has it. The record
    /// stays when the probe fails or finds no format.
    [[nodiscard]] QCoro::Task<void> retry(Record record);

    // The same, with nobody waiting.
    Q_INVOKABLE void beginEngine();
    Q_INVOKABLE void beginLink(const QUrl &url);
    Q_INVOKABLE void beginPaste();
    Q_INVOKABLE void beginDownload(const QUrl &url, const QString &formatID);
    Q_INVOKABLE void beginFormatPick(const QUrl &url, const veltro::Format &format);
    Q_INVOKABLE void beginRetry(const QUuid &id);

    /// Submits the link that a request of the system carries in its item "url".
    Q_INVOKABLE void handleOpenURL(const QUrl &request);
    /// Queues every link of the text in the default format, without a probe, 80 ms apart.
    Q_INVOKABLE void submitBatch(const QString &text);
    /// Removes the download; when it is running, its run ends as cancelled.
    Q_INVOKABLE void cancel(const QUuid &id);
    /// Removes what is done, failed or cancelled.
    Q_INVOKABLE void clearFinished();

Q_SIGNALS:
    void selectedTabChanged();
    void pendingFormatPickChanged();
    void preferencesChanged();
    void engineErrorChanged();
    void showEngineErrorChanged();
    void engineReadyChanged();
    void showBatchPasteChanged();
    void startedToastChanged();
    void completedToastChanged();

private:
    using Self = QPointer<MacAppStore>; // what a coroutine keeps across a wait

    /// The run under way.
    struct RunInProgress {
        Record record;
        bool isCancelled = false;
    };

    template <typename Value>
    void replace(Value &stored, const Value &value, void (MacAppStore::*notify)());
    void setEngineReady();
    void alert(const QString &text);

    // Links.
    [[nodiscard]] std::optional<QUrl> cookieFile(const QUrl &page);
    [[nodiscard]] std::optional<QUrl> cookieFileIfReadable(const QUrl &page);
    [[nodiscard]] QCoro::Task<MediaInfo> probeWithCookies(QUrl url);
    static QCoro::Task<std::optional<MediaInfo>> orAlert(Self self, QCoro::Task<MediaInfo> probe);
    static QCoro::Task<void> queueBatch(Self self, QList<QUrl> links, Format format);

    // Runs.
    static QCoro::Task<void> runInTurn(Self self, std::shared_ptr<Completion> previous,
                                       std::shared_ptr<Completion> own, Record record);
    static QCoro::Task<void> run(Self self, Record record);
    static QCoro::Task<ItemState> follow(Self self, Record record);
    [[nodiscard]] DownloadRequest requestFor(const DownloadProgressState &record);
    void takeEvent(const DownloadEvent &event);
    void announceFinished(const DownloadProgressState &record, const QUrl &file);

    const Services m_services;
    MacTab m_selectedTab = MacTab::home;
    ActiveDownloads m_activeDownloads;
    std::optional<FormatPickRequest> m_pendingFormatPick;
    Preferences m_preferences = Preferences::load();
    std::optional<QString> m_engineError;
    bool m_showEngineError = false;
    bool m_engineReady = false;
    NetworkMonitor m_network;
    bool m_showBatchPaste = false;
    std::optional<QString> m_startedToast;
    std::optional<CompletedToast> m_completedToast;
    std::shared_ptr<Completion> m_inFlightTask = Completion::finished();
    std::optional<RunInProgress> m_run;
};

using MacTab = MacAppStore::MacTab;

}
