// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "coordination/coordinator.h"
#include "engine/selectors/quality_tier.h"
#include "ui/home/paste_watcher.h"

#include <QAbstractItemModel>
#include <QPointer>
#include <QStringList>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

namespace veltro {

/// What the home screen holds and does: the address that is typed, the quality, the link on the
/// pasteboard, and how a submission goes. Lives as long as the window. Main thread.
class HomeModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes one.")
    Q_PROPERTY(QString urlText READ urlText WRITE setUrlText NOTIFY urlTextChanged)
    /// From the moment a link is handed over until the coordinator is through with it.
    Q_PROPERTY(bool working READ working NOTIFY workingChanged)
    Q_PROPERTY(QString workingVerb READ workingVerb NOTIFY workingVerbChanged)
    /// For a moment after a download has begun.
    Q_PROPERTY(bool startedConfirm READ startedConfirm NOTIFY startedConfirmChanged)
    Q_PROPERTY(QStringList tierLabels READ tierLabels CONSTANT)
    Q_PROPERTY(int selectedTier READ selectedTier WRITE setSelectedTier NOTIFY selectedTierChanged)
    Q_PROPERTY(bool hasCopiedLink READ hasCopiedLink NOTIFY copiedLinkChanged)
    /// The host of the copied link, or all of it when it has none.
    Q_PROPERTY(QString copiedLinkText READ copiedLinkText NOTIFY copiedLinkChanged)
    /// The newest items of the library; null until it is open.
    Q_PROPERTY(QAbstractItemModel *recents READ recents NOTIFY recentsChanged)
public:
    /// Both outlive this object.
    HomeModel(MacAppStore &store, Pasteboard &pasteboard, MacPasteWatcher::Delivery delivery,
              QObject *parent = nullptr);

    [[nodiscard]] QString urlText() const { return m_urlText; }
    void setUrlText(const QString &text);
    [[nodiscard]] bool working() const { return m_working; }
    [[nodiscard]] QString workingVerb() const;
    [[nodiscard]] bool startedConfirm() const { return m_startedConfirm; }
    [[nodiscard]] QStringList tierLabels() const;
    [[nodiscard]] int selectedTier() const { return int(m_tier); }
    void setSelectedTier(int tier);
    [[nodiscard]] bool hasCopiedLink() const { return m_watcher.candidate().has_value(); }
    [[nodiscard]] QString copiedLinkText() const;
    [[nodiscard]] QAbstractItemModel *recents() const { return m_recents; }
    void setRecents(QAbstractItemModel *recents);

    /// The screen is shown: the tier follows the preferences, and the pasteboard is looked at.
    Q_INVOKABLE void appear();
    /// The program has become the active one.
    Q_INVOKABLE void becomeActive();
    /// Hands the typed address over; anything but a web address stays where it is.
    Q_INVOKABLE void submit();
    Q_INVOKABLE void pasteAndSave();
    Q_INVOKABLE void useCopiedLink();
    Q_INVOKABLE void dismissCopiedLink() { m_watcher.dismiss(); }

Q_SIGNALS:
    void urlTextChanged();
    void workingChanged();
    void workingVerbChanged();
    void startedConfirmChanged();
    void selectedTierChanged();
    void copiedLinkChanged();
    void recentsChanged();

private:
    class WorkingScope;

    static QCoro::Task<void> save(QPointer<HomeModel> self, QUrl page, QString formatID);
    void setWorking(bool working);
    void setTier(QualityTier tier);
    void setStartedConfirm(bool confirm);
    void nextVerb();
    void followStartedToast();

    MacAppStore &m_store;
    Pasteboard &m_pasteboard;
    MacPasteWatcher m_watcher;
    QPointer<QAbstractItemModel> m_recents;
    QString m_urlText;
    bool m_working = false;
    int m_verb = 0;
    bool m_startedConfirm = false;
    bool m_hadStartedToast = false;
    QualityTier m_tier = QualityTier::p1080;
    QTimer m_verbTimer;
    QTimer m_confirmTimer;
};

}
