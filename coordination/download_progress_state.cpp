// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "coordination/download_progress_state.h"

#include <QThread>

#include <algorithm>
#include <utility>

namespace veltro {
namespace {

/// Stores a value and tells of it, unless it is what was there.
template <typename Value, typename Notify>
void replace(Value &stored, const Value &value, DownloadProgressState *record, Notify notify)
{
    Q_ASSERT(QThread::currentThread() == record->thread());
    if (stored != value) {
        stored = value;
        Q_EMIT(record->*notify)();
    }
}

}

DownloadProgressState::DownloadProgressState(DownloadOrder order)
    : m_order(std::move(order)), m_title(m_order.formatLabel), m_formatLabel(m_order.formatLabel)
{}

void DownloadProgressState::setTitle(const QString &title)
{
    replace(m_title, title, this, &DownloadProgressState::titleChanged);
}

void DownloadProgressState::setFormatLabel(const QString &label)
{
    replace(m_formatLabel, label, this, &DownloadProgressState::formatLabelChanged);
}

void DownloadProgressState::setBytesDone(qint64 bytes)
{
    replace(m_bytesDone, bytes, this, &DownloadProgressState::bytesDoneChanged);
}

void DownloadProgressState::setBytesTotal(std::optional<qint64> bytes)
{
    replace(m_bytesTotal, bytes, this, &DownloadProgressState::bytesTotalChanged);
}

void DownloadProgressState::setSpeedBytesPerSecond(std::optional<double> speed)
{
    replace(m_speed, speed, this, &DownloadProgressState::speedBytesPerSecondChanged);
}

void DownloadProgressState::setEtaSeconds(std::optional<double> seconds)
{
    replace(m_etaSeconds, seconds, this, &DownloadProgressState::etaSecondsChanged);
}

void DownloadProgressState::setFragmentIndex(std::optional<qint64> index)
{
    replace(m_fragmentIndex, index, this, &DownloadProgressState::fragmentIndexChanged);
}

void DownloadProgressState::setFragmentCount(std::optional<qint64> count)
{
    replace(m_fragmentCount, count, this, &DownloadProgressState::fragmentCountChanged);
}

void DownloadProgressState::setState(const ItemState &state)
{
    replace(m_state, state, this, &DownloadProgressState::stateChanged);
}

void DownloadProgressState::setLocalFileURL(const std::optional<QUrl> &file)
{
    replace(m_localFileURL, file, this, &DownloadProgressState::localFileURLChanged);
}

void DownloadProgressState::apply(const DownloadEvent &event)
{
    std::visit([this](const auto &kind) { take(kind); }, event);
}

void DownloadProgressState::take(const DownloadStarted &event)
{
    setTitle(event.info.title);
    setState({ItemState::Kind::running, {}});
}

void DownloadProgressState::take(const DownloadProgressed &event)
{
    setBytesDone(event.bytesDone);
    setBytesTotal(event.bytesTotal);
    setSpeedBytesPerSecond(event.speed);
    setEtaSeconds(event.eta);
    setFragmentIndex(event.fragmentIndex);
    setFragmentCount(event.fragmentCount);
}

void DownloadProgressState::take(const DownloadPostProcessing &event)
{
    setState(ItemState::postProcessing(event.stage));
}

void DownloadProgressState::take(const DownloadFinished &event)
{
    setLocalFileURL(event.fileURL);
    setState({ItemState::Kind::done, {}});
}

std::optional<double> DownloadProgressState::fraction() const
{
    if (m_fragmentIndex && m_fragmentCount && *m_fragmentCount >= 1) {
        return std::min(1.0, static_cast<double>(*m_fragmentIndex) /
                                 static_cast<double>(*m_fragmentCount));
    }
    if (m_bytesTotal && *m_bytesTotal > 0) {
        return static_cast<double>(m_bytesDone) / static_cast<double>(*m_bytesTotal);
    }
    return std::nullopt;
}

}
