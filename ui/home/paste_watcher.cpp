// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/home/paste_watcher.h"

#include "coordination/page_links.h"
#include "platform/pasteboard.h"

namespace veltro {
namespace {

// A delivery that comes later than this was copied in the meantime.
constexpr std::chrono::milliseconds longestDelivery{700};

}

MacPasteWatcher::MacPasteWatcher(Pasteboard &pasteboard, Delivery delivery, QObject *parent)
    : QObject(parent), m_pasteboard(pasteboard), m_delivery(delivery)
{
    m_deliveryIsDue.setSingleShot(true);
    m_deliveryIsDue.setInterval(longestDelivery);
    connect(&pasteboard, &Pasteboard::changed, this, &MacPasteWatcher::completeCheck);
}

void MacPasteWatcher::check()
{
    look();
    if (m_delivery == Delivery::afterActivation) {
        m_deliveryIsDue.start();
    }
}

void MacPasteWatcher::completeCheck()
{
    if (m_deliveryIsDue.isActive()) {
        m_deliveryIsDue.stop();
        look();
    }
}

void MacPasteWatcher::look()
{
    m_pasteboard.read(Pasteboard::Use::link, this, [this](const std::optional<QString> &text) {
        std::optional<QUrl> link = pageLink(text.value_or(QString()));
        if (link && m_dismissed.contains(link->toString(QUrl::FullyEncoded))) {
            link.reset();
        }
        setCandidate(link);
    });
}

void MacPasteWatcher::dismiss()
{
    if (m_candidate) {
        m_dismissed.insert(m_candidate->toString(QUrl::FullyEncoded));
        setCandidate(std::nullopt);
    }
}

void MacPasteWatcher::setCandidate(const std::optional<QUrl> &candidate)
{
    if (m_candidate != candidate) {
        m_candidate = candidate;
        Q_EMIT candidateChanged();
    }
}

}
