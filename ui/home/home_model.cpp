// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/home/home_model.h"

#include "coordination/detach.h"
#include "coordination/page_links.h"
#include "platform/pasteboard.h"

#include <array>

namespace veltro {
namespace {

constexpr std::chrono::milliseconds verbTime{2800};
constexpr std::chrono::milliseconds confirmTime{1600};

constexpr std::array workingVerbs{
    QLatin1String("Reading"),   QLatin1String("Sniffing"),  QLatin1String("Whirring"),
    QLatin1String("Tinkering"), QLatin1String("Scheming"),  QLatin1String("Hatching"),
    QLatin1String("Rummaging"), QLatin1String("Conjuring"),
};

}

/// Takes the state of work back on every way out, or the button would stay disabled.
class HomeModel::WorkingScope {
public:
    explicit WorkingScope(QPointer<HomeModel> model) : m_model(std::move(model)) {}
    ~WorkingScope()
    {
        if (m_model) {
            m_model->setWorking(false);
        }
    }
    Q_DISABLE_COPY_MOVE(WorkingScope)

private:
    const QPointer<HomeModel> m_model;
};

HomeModel::HomeModel(MacAppStore &store, Pasteboard &pasteboard, MacPasteWatcher::Delivery delivery,
                     QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_pasteboard(pasteboard)
    , m_watcher(pasteboard, delivery)
    , m_hadStartedToast(store.hasStartedToast())
{
    m_verbTimer.setInterval(verbTime);
    m_confirmTimer.setInterval(confirmTime);
    m_confirmTimer.setSingleShot(true);
    connect(&m_verbTimer, &QTimer::timeout, this, &HomeModel::nextVerb);
    connect(&m_confirmTimer, &QTimer::timeout, this, [this] { setStartedConfirm(false); });
    connect(&store, &MacAppStore::startedToastChanged, this, &HomeModel::followStartedToast);
    connect(&m_watcher, &MacPasteWatcher::candidateChanged, this, &HomeModel::copiedLinkChanged);
}

void HomeModel::setUrlText(const QString &text)
{
    if (m_urlText != text) {
        m_urlText = text;
        Q_EMIT urlTextChanged();
    }
}

QString HomeModel::workingVerb() const
{
    return workingVerbs.at(std::size_t(m_verb)) + QChar(u'…');
}

QStringList HomeModel::tierLabels() const
{
    QStringList labels;
    for (const QualityTier tier : qualityTiers) {
        labels << label(tier);
    }
    return labels;
}

void HomeModel::setSelectedTier(int tier)
{
    if (tier >= 0 && tier < int(qualityTiers.size())) {
        setTier(qualityTiers.at(std::size_t(tier)));
    }
}

QString HomeModel::copiedLinkText() const
{
    const std::optional<QUrl> &link = m_watcher.candidate();
    if (!link) {
        return {};
    }
    return link->host().isEmpty() ? link->toString() : link->host();
}

void HomeModel::setRecents(QAbstractItemModel *recents)
{
    if (m_recents != recents) {
        m_recents = recents;
        Q_EMIT recentsChanged();
    }
}

void HomeModel::appear()
{
    setTier(qualityTierForSelector(m_store.preferences().defaultFormatID));
    m_watcher.check();
}

void HomeModel::becomeActive()
{
    if (m_store.selectedTab() == MacTab::home) {
        m_watcher.check();
    }
}

void HomeModel::submit()
{
    const std::optional<QUrl> page = pageLink(m_urlText);
    if (m_working || !page) {
        return;
    }
    setWorking(true);
    detach(save(this, *page, selector(m_tier)), QStringLiteral("a link of the home screen"));
}

QCoro::Task<void> HomeModel::save(QPointer<HomeModel> self, QUrl page, QString formatID)
{
    const QPointer<HomeModel> model = std::move(self);
    const WorkingScope scope(model);
    co_await model->m_store.startDownload(std::move(page), std::move(formatID));
}

void HomeModel::pasteAndSave()
{
    m_pasteboard.read(Pasteboard::Use::link, this, [this](const std::optional<QString> &text) {
        if (text && !m_working) {
            setUrlText(text->trimmed());
            submit();
        }
    });
}

void HomeModel::useCopiedLink()
{
    if (const std::optional<QUrl> link = m_watcher.candidate()) {
        setUrlText(link->toString(QUrl::FullyEncoded));
        m_watcher.dismiss();
        submit();
    }
}

void HomeModel::setWorking(bool working)
{
    if (m_working == working) {
        return;
    }
    m_working = working;
    working ? m_verbTimer.start() : m_verbTimer.stop();
    Q_EMIT workingChanged();
}

void HomeModel::nextVerb()
{
    m_verb = (m_verb + 1) % int(workingVerbs.size());
    Q_EMIT workingVerbChanged();
}

void HomeModel::setTier(QualityTier tier)
{
    if (m_tier != tier) {
        m_tier = tier;
        Q_EMIT selectedTierChanged();
    }
}

void HomeModel::setStartedConfirm(bool confirm)
{
    if (m_startedConfirm != confirm) {
        m_startedConfirm = confirm;
        Q_EMIT startedConfirmChanged();
    }
}

void HomeModel::followStartedToast()
{
    const bool has = m_store.hasStartedToast();
    if (has && !m_hadStartedToast) {
        setUrlText(QString());
        setStartedConfirm(true);
        m_confirmTimer.start();
    }
    m_hadStartedToast = has;
}

}
