// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "engine/media/download_event.h"

#include <QObject>
#include <QUrl>
#include <QUuid>

#include <optional>

namespace veltro {

/// Where a download stands.
struct ItemState {
    Q_GADGET
    Q_PROPERTY(Kind kind MEMBER kind)
    Q_PROPERTY(QString text MEMBER text)
public:
    enum class Kind {
        queued,         ///< waits for its turn, or for the first word of its run
        running,        ///< downloads
        postProcessing, ///< merges, converts or re-encodes; the text names the step
        done,
        failed, ///< the text says why
        cancelled,
    };
    Q_ENUM(Kind)

    Kind kind = Kind::queued;
    QString text; ///< empty but for the two kinds that say so

    static ItemState postProcessing(QString stage)
    {
        return {Kind::postProcessing, std::move(stage)};
    }
    static ItemState failed(QString reason) { return {Kind::failed, std::move(reason)}; }

    /// Whether nothing more will happen to the download.
    [[nodiscard]] bool isFinal() const
    {
        return kind == Kind::done || kind == Kind::failed || kind == Kind::cancelled;
    }

    bool operator==(const ItemState &) const = default;
};

/// What a download starts from.
struct DownloadOrder {
    QUuid id;
    QUrl url; ///< the page
    QString formatID;
    QString formatLabel;
};

/// One download of this session as the screens see it, from the queue to its end. Shared by the
/// coordinator's list, the run that moves it on and the screens; lives in memory alone.
/// Main thread only. A property notifies when its value changes, and only then.
class DownloadProgressState : public QObject {
    Q_OBJECT
    Q_PROPERTY(QUuid id READ id CONSTANT)
    Q_PROPERTY(QUrl url READ url CONSTANT)
    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY titleChanged)
    Q_PROPERTY(QString formatID READ formatID CONSTANT)
    Q_PROPERTY(QString formatLabel READ formatLabel WRITE setFormatLabel NOTIFY formatLabelChanged)
    Q_PROPERTY(qint64 bytesDone READ bytesDone WRITE setBytesDone NOTIFY bytesDoneChanged)
    Q_PROPERTY(std::optional<qint64> bytesTotal READ bytesTotal WRITE setBytesTotal NOTIFY
                   bytesTotalChanged)
    Q_PROPERTY(std::optional<double> speedBytesPerSecond READ speedBytesPerSecond WRITE
                   setSpeedBytesPerSecond NOTIFY speedBytesPerSecondChanged)
    Q_PROPERTY(std::optional<double> etaSeconds READ etaSeconds WRITE setEtaSeconds NOTIFY
                   etaSecondsChanged)
    Q_PROPERTY(std::optional<qint64> fragmentIndex READ fragmentIndex WRITE setFragmentIndex NOTIFY
                   fragmentIndexChanged)
    Q_PROPERTY(std::optional<qint64> fragmentCount READ fragmentCount WRITE setFragmentCount NOTIFY
                   fragmentCountChanged)
    Q_PROPERTY(veltro::ItemState state READ state WRITE setState NOTIFY stateChanged)
    Q_PROPERTY(std::optional<QUrl> localFileURL READ localFileURL WRITE setLocalFileURL NOTIFY
                   localFileURLChanged)
public:
    /// Queued, with the label as its title.
    explicit DownloadProgressState(DownloadOrder order);

    [[nodiscard]] const QUuid &id() const { return m_order.id; }
    [[nodiscard]] const QUrl &url() const { return m_order.url; }
    [[nodiscard]] const QString &formatID() const { return m_order.formatID; }
    [[nodiscard]] const QString &title() const { return m_title; }
    [[nodiscard]] const QString &formatLabel() const { return m_formatLabel; }
    [[nodiscard]] qint64 bytesDone() const { return m_bytesDone; }
    [[nodiscard]] std::optional<qint64> bytesTotal() const { return m_bytesTotal; }
    [[nodiscard]] std::optional<double> speedBytesPerSecond() const { return m_speed; }
    [[nodiscard]] std::optional<double> etaSeconds() const { return m_etaSeconds; }
    [[nodiscard]] std::optional<qint64> fragmentIndex() const { return m_fragmentIndex; }
    [[nodiscard]] std::optional<qint64> fragmentCount() const { return m_fragmentCount; }
    [[nodiscard]] const ItemState &state() const { return m_state; }
    [[nodiscard]] const std::optional<QUrl> &localFileURL() const { return m_localFileURL; }

    void setTitle(const QString &title);
    void setFormatLabel(const QString &label);
    void setBytesDone(qint64 bytes);
    void setBytesTotal(std::optional<qint64> bytes);
    void setSpeedBytesPerSecond(std::optional<double> speed);
    void setEtaSeconds(std::optional<double> seconds);
    void setFragmentIndex(std::optional<qint64> index);
    void setFragmentCount(std::optional<qint64> count);
    void setState(const ItemState &state);
    void setLocalFileURL(const std::optional<QUrl> &file);

    /// Takes over what the run reports.
    void apply(const DownloadEvent &event);

    /// The share that is done, by fragments (never above 1) or else by bytes (above 1 when more
    /// came than was announced); nothing while neither total is known.
    [[nodiscard]] std::optional<double> fraction() const;

Q_SIGNALS:
    void titleChanged();
    void formatLabelChanged();
    void bytesDoneChanged();
    void bytesTotalChanged();
    void speedBytesPerSecondChanged();
    void etaSecondsChanged();
    void fragmentIndexChanged();
    void fragmentCountChanged();
    void stateChanged();
    void localFileURLChanged();

private:
    void take(const DownloadStarted &event);
    void take(const DownloadProgressed &event);
    void take(const DownloadPostProcessing &event);
    void take(const DownloadFinished &event);

    const DownloadOrder m_order;
    QString m_title;
    QString m_formatLabel;
    qint64 m_bytesDone = 0;
    std::optional<qint64> m_bytesTotal;
    std::optional<double> m_speed;
    std::optional<double> m_etaSeconds;
    std::optional<qint64> m_fragmentIndex;
    std::optional<qint64> m_fragmentCount;
    ItemState m_state;
    std::optional<QUrl> m_localFileURL;
};

}
