// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/updater.h"

#include "platform/bundle.h"
#include "platform/child_environment.h"
#include "platform/log.h"
#include "platform/serial_queue.h"
#include "platform/update_download.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPointer>
#include <QProcess>

#include <algorithm>
#include <utility>

namespace veltro {
namespace {

// The window comes first; a check can wait this long after the start.
constexpr qint64 soonestCheckSeconds = 10;

QString memoryKey()
{
    return QStringLiteral("Updates");
}

}

/// Of earlier launches.
struct UpdateManager::Memory {
    SeenUpdates seen;
    QVersionNumber skipped;
    QDateTime checkedAt;
};

UpdateManager::UpdateManager(QObject *parent)
    : UpdateManager(Bundle::main().root(), DefaultsStore(), parent)
{
    scheduleNextCheck();
}

UpdateManager::UpdateManager(std::filesystem::path bundleRoot, DefaultsStore defaults,
                             QObject *parent)
    : QObject(parent)
    , m_root(std::move(bundleRoot))
    , m_defaults(std::move(defaults))
    , m_information(BundleInformation::of(m_root))
{
    m_nextCheck.setSingleShot(true);
    connect(&m_nextCheck, &QTimer::timeout, this, &UpdateManager::checkByItself);
    if (auto *const application = QCoreApplication::instance()) {
        connect(application, &QCoreApplication::aboutToQuit, this, &UpdateManager::end);
    }
}

UpdateManager::~UpdateManager()
{
    if (m_download) {
        m_download->disconnect(this);
    }
}

QString UpdateManager::version() const
{
    return m_update ? m_update->version.toString() : QString();
}

QString UpdateManager::notes() const
{
    return m_update ? m_update->notes : QString();
}

bool UpdateManager::canInstall() const
{
    return m_state == State::available && !m_update->archive.isEmpty() &&
           !UpdateInstaller(m_root).refusal();
}

void UpdateManager::checkForUpdates()
{
    check(Asker::user);
    show(true);
}

void UpdateManager::checkByItself()
{
    if (m_information.checksForUpdates && !m_information.updateFeed.isEmpty()) {
        check(Asker::program);
    }
    scheduleNextCheck();
}

void UpdateManager::scheduleNextCheck()
{
    if (!m_information.checksForUpdates || m_information.updateFeed.isEmpty()) {
        return;
    }
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const QDateTime last = memory().checkedAt;
    // A last check in the future is a clock that was wrong.
    const qint64 passed =
        last.isValid() && last <= now ? last.secsTo(now) : m_information.updateIntervalSeconds;
    const qint64 seconds =
        std::max(soonestCheckSeconds, m_information.updateIntervalSeconds - passed);
    m_nextCheck.start(std::chrono::seconds(std::min<qint64>(seconds, 24 * 3600)));
}

void UpdateManager::check(Asker asker)
{
    const bool isUnderWay = m_state == State::checking || m_state == State::downloading ||
                            m_state == State::preparing || m_state == State::ready;
    if (isUnderWay) {
        m_asker = asker == Asker::user ? asker : m_asker;
        return;
    }
    if (m_information.updateFeed.isEmpty()) {
        enter(State::unmanaged, tr("Updates of Veltro come from where the program was installed."));
        return;
    }
    m_asker = asker;
    Memory remembered = memory();
    remembered.checkedAt = QDateTime::currentDateTimeUtc();
    remember(remembered);
    m_update.reset();
    enter(State::checking, tr("Checking for updates…"));
    if (!isUpdateAddress(m_information.updateFeed)) {
        fail(tr("The address of the list of updates is not safe."));
        return;
    }
    m_download = std::make_unique<UpdateDownload>(m_information.updateFeed, longestUpdateFeed);
    connect(m_download.get(), &UpdateDownload::ended, this, &UpdateManager::takeFeed);
    m_download->start(m_network);
}

void UpdateManager::takeFeed(const QString &failure)
{
    UpdateDownload *const download = m_download.release();
    download->disconnect(this);
    download->deleteLater(); // it is its signal that brought us here
    if (!failure.isEmpty()) {
        fail(failure);
        return;
    }
    try {
        Memory remembered = memory();
        const Update update =
            readUpdateFeed(download->content(), m_information.updateKey, remembered.seen);
        remembered.seen = {update.date, update.version};
        remember(remembered);
        offer(update);
    } catch (const UpdateError &error) {
        fail(QString::fromUtf8(error.what()));
    }
}

void UpdateManager::offer(const Update &update)
{
    if (update.version <= QVersionNumber::fromString(m_information.shortVersion)) {
        enter(State::upToDate, tr("Veltro %1 is the newest version.").arg(currentVersion()));
        return;
    }
    if (m_asker == Asker::program && update.version == memory().skipped) {
        enter(State::idle, QString());
        return;
    }
    m_update = update;
    QString message = tr("Veltro %1 is available. You have %2.").arg(version(), currentVersion());
    if (const std::optional<QString> refusal = UpdateInstaller(m_root).refusal()) {
        message += QLatin1Char(' ') + *refusal;
    } else if (update.archive.isEmpty()) {
        message += QLatin1Char(' ') + tr("There is no such version for this kind of machine.");
    }
    enter(State::available, message);
    show(true);
}

void UpdateManager::install()
{
    if (!canInstall()) {
        return;
    }
    m_asker = Asker::user;
    m_installer = std::make_unique<UpdateInstaller>(m_root);
    QString file;
    try {
        file = QString::fromStdString((m_installer->workFolder() / "archive").string());
    } catch (const UpdateError &error) {
        fail(QString::fromUtf8(error.what()));
        return;
    }
    m_progress = 0;
    Q_EMIT progressChanged();
    enter(State::downloading, tr("Downloading Veltro %1…").arg(version()));
    m_download = std::make_unique<UpdateDownload>(m_update->archive, m_update->archiveBytes);
    connect(m_download.get(), &UpdateDownload::progressed, this, [this](qint64 bytes) {
        m_progress = double(bytes) / double(m_update->archiveBytes);
        Q_EMIT progressChanged();
    });
    connect(m_download.get(), &UpdateDownload::ended, this, &UpdateManager::takeArchive);
    m_download->start(m_network, file);
}

void UpdateManager::takeArchive(const QString &failure)
{
    UpdateDownload *const download = m_download.release();
    download->disconnect(this);
    download->deleteLater();
    if (!failure.isEmpty()) {
        fail(failure);
        return;
    }
    if (download->bytes() != m_update->archiveBytes ||
        download->sha256() != m_update->archiveSha256) {
        fail(tr("The update did not arrive as its makers signed it."));
        return;
    }
    enter(State::preparing, tr("Preparing Veltro %1…").arg(version()));
    m_unpacking = std::make_unique<SerialQueue>("com.veltro.update");
    const QPointer<UpdateManager> self(this);
    m_unpacking->async([self, installer = m_installer.get(), version = m_update->version] {
        QString problem;
        try {
            installer->prepare(installer->workFolder() / "archive", version);
        } catch (const std::exception &error) {
            problem = QString::fromUtf8(error.what());
        }
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [self, problem] {
                if (self) {
                    self->takePrepared(problem);
                }
            },
            Qt::QueuedConnection);
    });
}

void UpdateManager::takePrepared(const QString &failure)
{
    m_unpacking.reset();
    if (!failure.isEmpty()) {
        fail(failure);
        return;
    }
    enter(State::ready,
          tr("Veltro %1 is ready. It is put in place when the program ends.").arg(version()));
    show(true);
}

void UpdateManager::skip()
{
    if (m_state == State::available) {
        Memory remembered = memory();
        remembered.skipped = m_update->version;
        remember(remembered);
        enter(State::idle, QString());
    }
    show(false);
}

void UpdateManager::later()
{
    show(false);
    if (m_state == State::available || m_state == State::failed || m_state == State::upToDate ||
        m_state == State::unmanaged) {
        enter(State::idle, QString());
    }
}

void UpdateManager::finish()
{
    if (m_state != State::ready) {
        return;
    }
    try {
        m_installer->install();
        enter(State::idle, QString());
        m_installer.reset();
    } catch (const UpdateError &error) {
        fail(QString::fromUtf8(error.what()));
    }
}

void UpdateManager::relaunch()
{
    m_isRelaunching = true;
    QCoreApplication::quit();
}

void UpdateManager::end()
{
    finish();
    if (!std::exchange(m_isRelaunching, false)) {
        return;
    }
    // The new start finds the old one gone, or takes over from it when it goes. What could not be
    // put in place leaves the old one whole, which then is what starts.
    connect(QCoreApplication::instance(), &QObject::destroyed, [root = m_root] {
        QProcess process;
        process.setProgram(QString::fromStdString((root / "veltro").string()));
        process.setProcessEnvironment(childEnvironment());
        process.startDetached();
    });
}

void UpdateManager::fail(const QString &what)
{
    m_installer.reset();
    if (m_asker == Asker::program) {
        logLine(LogTag::engine, "no look for updates: " + what.toStdString());
        enter(State::idle, QString());
    } else {
        enter(State::failed, what);
        show(true);
    }
}

void UpdateManager::enter(State state, const QString &message)
{
    m_state = state;
    m_message = message;
    Q_EMIT stateChanged();
}

void UpdateManager::show(bool isShown)
{
    if (std::exchange(m_isShown, isShown) != isShown) {
        Q_EMIT isShownChanged();
    }
}

UpdateManager::Memory UpdateManager::memory() const
{
    const QJsonObject kept =
        QJsonDocument::fromJson(m_defaults.data(memoryKey()).value_or(QByteArray())).object();
    const auto date = [&](const char *name) {
        return QDateTime::fromString(kept.value(QLatin1String(name)).toString(), Qt::ISODateWithMs);
    };
    const auto number = [&](const char *name) {
        return QVersionNumber::fromString(kept.value(QLatin1String(name)).toString());
    };
    return {{date("seenDate"), number("seenVersion")}, number("skipped"), date("checkedAt")};
}

void UpdateManager::remember(const Memory &memory)
{
    const QJsonObject kept{
        {QStringLiteral("seenDate"), memory.seen.date.toString(Qt::ISODateWithMs)},
        {QStringLiteral("seenVersion"), memory.seen.version.toString()},
        {QStringLiteral("skipped"), memory.skipped.toString()},
        {QStringLiteral("checkedAt"), memory.checkedAt.toString(Qt::ISODateWithMs)}};
    m_defaults.setData(memoryKey(), QJsonDocument(kept).toJson(QJsonDocument::Compact));
}

}
