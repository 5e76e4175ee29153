// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/downloads/download_row.h"

#include <algorithm>

namespace veltro {
namespace {

DownloadRow::Tint tintOf(ItemState::Kind kind)
{
    switch (kind) {
    case ItemState::Kind::queued:
    case ItemState::Kind::cancelled:
        return DownloadRow::Neutral;
    case ItemState::Kind::running:
        return DownloadRow::Accent;
    case ItemState::Kind::postProcessing:
        return DownloadRow::Warning;
    case ItemState::Kind::done:
        return DownloadRow::Success;
    case ItemState::Kind::failed:
        return DownloadRow::Danger;
    }
    Q_UNREACHABLE();
}

}

void DownloadRow::setRecord(DownloadProgressState *record)
{
    if (m_record == record) {
        return;
    }
    if (m_record) {
        m_record->disconnect(this);
    }
    m_record = record;
    if (record) {
        using Record = DownloadProgressState;
        connect(record, &Record::titleChanged, this, &DownloadRow::titleChanged);
        connect(record, &Record::stateChanged, this, &DownloadRow::updateState);
        connect(record, &Record::localFileURLChanged, this, &DownloadRow::stateChanged);
        for (const auto changed : {&Record::bytesDoneChanged, &Record::bytesTotalChanged,
                                   &Record::speedBytesPerSecondChanged, &Record::etaSecondsChanged,
                                   &Record::fragmentIndexChanged, &Record::fragmentCountChanged}) {
            connect(record, changed, this, &DownloadRow::updateProgress);
        }
    }
    Q_EMIT recordChanged();
    Q_EMIT titleChanged();
    updateState();
}

ItemState DownloadRow::state() const
{
    return m_record ? m_record->state() : ItemState();
}

QString DownloadRow::title() const
{
    return m_record ? singleLine(m_record->title()) : QString();
}

QString DownloadRow::host() const
{
    return m_record ? hostText(m_record->url()) : QString();
}

QUrl DownloadRow::page() const
{
    return m_record ? m_record->url() : QUrl();
}

bool DownloadRow::isWebPage() const
{
    const QString scheme = page().scheme();
    return scheme == QLatin1String("http") || scheme == QLatin1String("https");
}

QString DownloadRow::status() const
{
    return statusLabel(state().kind);
}

DownloadRow::Tint DownloadRow::statusTint() const
{
    return tintOf(state().kind);
}

QString DownloadRow::stage() const
{
    return state().kind == ItemState::Kind::postProcessing ? state().text : QString();
}

QString DownloadRow::failure() const
{
    return state().kind == ItemState::Kind::failed ? state().text : QString();
}

QUrl DownloadRow::file() const
{
    return m_record ? m_record->localFileURL().value_or(QUrl()) : QUrl();
}

bool DownloadRow::canPlay() const
{
    return state().kind == ItemState::Kind::done && !file().isEmpty();
}

bool DownloadRow::canCancel() const
{
    return m_record && !state().isFinal();
}

bool DownloadRow::canRetry() const
{
    return state().kind == ItemState::Kind::failed;
}

QString DownloadRow::description() const
{
    return m_record ? spokenDescription(*m_record) : QString();
}

void DownloadRow::updateProgress()
{
    std::optional<double> fraction;
    if (const auto share = m_record ? m_record->fraction() : std::nullopt) {
        fraction = std::clamp(*share, 0.0, 1.0);
    }
    if (fraction != m_fraction) {
        m_fraction = fraction;
        Q_EMIT fractionChanged();
    }
    const ProgressDetail detail = m_record ? progressDetail(*m_record) : ProgressDetail();
    if (detail != m_detail) {
        m_detail = detail;
        Q_EMIT detailChanged();
        Q_EMIT descriptionChanged();
    }
}

void DownloadRow::updateState()
{
    Q_EMIT stateChanged();
    updateProgress();
    Q_EMIT descriptionChanged();
}

}
