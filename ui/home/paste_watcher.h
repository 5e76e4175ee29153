// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QObject>
#include <QSet>
#include <QTimer>
#include <QUrl>

#include <optional>

namespace veltro {

class Pasteboard;

/// Offers the web link on the pasteboard, unless the user has used or dismissed it before. Looks
/// when check() is called and at no other time. Main thread.
class MacPasteWatcher : public QObject {
    Q_OBJECT
public:
    /// When the pasteboard shows what was copied elsewhere.
    enum class Delivery {
        atOnce,
        afterActivation, ///< a moment after the window got the focus: that completes a check
    };

    /// The pasteboard outlives the watcher.
    MacPasteWatcher(Pasteboard &pasteboard, Delivery delivery, QObject *parent = nullptr);

    [[nodiscard]] const std::optional<QUrl> &candidate() const { return m_candidate; }
    void check();
    /// Never offers the candidate again.
    void dismiss();

Q_SIGNALS:
    void candidateChanged();

private:
    void look();
    void completeCheck();
    void setCandidate(const std::optional<QUrl> &candidate);

    Pasteboard &m_pasteboard;
    const Delivery m_delivery;
    std::optional<QUrl> m_candidate;
    QSet<QString> m_dismissed; // absolute addresses
    QTimer m_deliveryIsDue;    // runs while a check waits to be completed
};

}
