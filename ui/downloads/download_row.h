// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "ui/downloads/download_texts.h"

#include <QObject>
#include <QPointer>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace veltro {

/// What a row of the queue shows and offers, kept true to its record. The record may be exchanged
/// for another one at any time, and may be gone before the row. Main thread only.
class DownloadRow : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(
        veltro::DownloadProgressState *record READ record WRITE setRecord NOTIFY recordChanged)
    /// On one line, whatever the page put into it.
    Q_PROPERTY(QString title READ title NOTIFY titleChanged)
    Q_PROPERTY(QString host READ host NOTIFY recordChanged)
    Q_PROPERTY(QUrl page READ page NOTIFY recordChanged)
    Q_PROPERTY(QString pageText READ pageText NOTIFY recordChanged)
    /// Whether a browser can open the page.
    Q_PROPERTY(bool isWebPage READ isWebPage NOTIFY recordChanged)
    Q_PROPERTY(QString status READ status NOTIFY stateChanged)
    Q_PROPERTY(Tint statusTint READ statusTint NOTIFY stateChanged)
    /// The step of the processing; empty in other states.
    Q_PROPERTY(QString stage READ stage NOTIFY stateChanged)
    /// Why it failed, as the engine put it; empty in other states.
    Q_PROPERTY(QString failure READ failure NOTIFY stateChanged)
    Q_PROPERTY(QUrl file READ file NOTIFY stateChanged)
    Q_PROPERTY(bool hasFile READ hasFile NOTIFY stateChanged)
    /// As the user's file manager writes it.
    Q_PROPERTY(QString filePath READ filePath NOTIFY stateChanged)
    Q_PROPERTY(bool canPlay READ canPlay NOTIFY stateChanged)
    Q_PROPERTY(bool canCancel READ canCancel NOTIFY stateChanged)
    Q_PROPERTY(bool canRetry READ canRetry NOTIFY stateChanged)
    Q_PROPERTY(bool hasFraction READ hasFraction NOTIFY fractionChanged)
    /// From 0 to 1, whatever the record says.
    Q_PROPERTY(double fraction READ fraction NOTIFY fractionChanged)
    Q_PROPERTY(QString position READ position NOTIFY detailChanged)
    Q_PROPERTY(QString total READ total NOTIFY detailChanged)
    Q_PROPERTY(QString speed READ speed NOTIFY detailChanged)
    Q_PROPERTY(QString timeLeft READ timeLeft NOTIFY detailChanged)
    Q_PROPERTY(QString description READ description NOTIFY descriptionChanged)
public:
    /// The colour of the status, by role.
    enum Tint { Neutral, Accent, Warning, Success, Danger };
    Q_ENUM(Tint)

    explicit DownloadRow(QObject *parent = nullptr) : QObject(parent) {}

    [[nodiscard]] DownloadProgressState *record() const { return m_record; }
    void setRecord(DownloadProgressState *record);

    [[nodiscard]] QString title() const;
    [[nodiscard]] QString host() const;
    [[nodiscard]] QUrl page() const;
    [[nodiscard]] QString pageText() const { return QString::fromUtf8(page().toEncoded()); }
    [[nodiscard]] bool isWebPage() const;
    [[nodiscard]] QString status() const;
    [[nodiscard]] Tint statusTint() const;
    [[nodiscard]] QString stage() const;
    [[nodiscard]] QString failure() const;
    [[nodiscard]] QUrl file() const;
    [[nodiscard]] bool hasFile() const { return !file().isEmpty(); }
    [[nodiscard]] QString filePath() const { return file().toLocalFile(); }
    [[nodiscard]] bool canPlay() const;
    [[nodiscard]] bool canCancel() const;
    [[nodiscard]] bool canRetry() const;
    [[nodiscard]] bool hasFraction() const { return m_fraction.has_value(); }
    [[nodiscard]] double fraction() const { return m_fraction.value_or(0); }
    [[nodiscard]] QString position() const { return m_detail.position; }
    [[nodiscard]] QString total() const { return m_detail.total; }
    [[nodiscard]] QString speed() const { return m_detail.speed; }
    [[nodiscard]] QString timeLeft() const { return m_detail.timeLeft; }
    [[nodiscard]] QString description() const;

Q_SIGNALS:
    void recordChanged();
    void titleChanged();
    void stateChanged();
    void fractionChanged();
    void detailChanged();
    void descriptionChanged();

private:
    [[nodiscard]] ItemState state() const;
    void updateProgress();
    void updateState();

    QPointer<DownloadProgressState> m_record;
    std::optional<double> m_fraction;
    ProgressDetail m_detail;
};

}
