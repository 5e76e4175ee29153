// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/cookie_import.h"

#include "library/cookie_file.h"
#include "library/model_container.h"
#include "library/model_context.h"
#include "platform/serial_queue.h"

#include <QCoro/QCoroFuture>
#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPromise>

#include <system_error>
#include <utility>

namespace veltro {
namespace {

using Kind = CookieImportError::Kind;

const auto wwwLabel = QStringLiteral("www.");

/// The host and its sibling; an address in numbers has none.
QStringList siblingHosts(const QString &host)
{
    QStringList hosts{host};
    if (host.startsWith(wwwLabel)) {
        hosts << host.mid(wwwLabel.size());
    } else if (!host.contains(u':') && !host.back().isDigit()) {
        hosts << wwwLabel + host;
    }
    return hosts;
}

Kind kindNamed(const QString &name)
{
    static const QHash<QString, Kind> kinds{
        {QStringLiteral("missing"), Kind::missing},       {QStringLiteral("locked"), Kind::locked},
        {QStringLiteral("tooLarge"), Kind::tooLarge},     {QStringLiteral("none"), Kind::none},
        {QStringLiteral("notCookies"), Kind::notCookies},
    };
    return kinds.value(name, Kind::unreadable);
}

/// Browsers write hosts with other letters than ASCII in their ASCII form.
QStringList asciiHosts(const QStringList &hosts)
{
    QStringList result;
    for (const QString &host : hosts) {
        const QByteArray ascii = QUrl::toAce(host);
        result << (ascii.isEmpty() ? host : QString::fromLatin1(ascii));
    }
    return result;
}

std::vector<HostCookies> sitesOf(const QByteArray &answer, const QStringList &hosts,
                                 const QString &source)
{
    const QJsonObject object = QJsonDocument::fromJson(answer).object();
    if (!object.contains(QLatin1String("sites"))) {
        throw CookieImportError(kindNamed(object.value(QLatin1String("failure")).toString()),
                                hosts.front(), source);
    }
    const QStringList ascii = asciiHosts(hosts);
    std::vector<HostCookies> sites;
    for (const auto &value : object.value(QLatin1String("sites")).toArray()) {
        const QJsonObject site = value.toObject();
        const qsizetype index = ascii.indexOf(site.value(QLatin1String("host")).toString());
        sites.push_back({hosts.value(index), site.value(QLatin1String("count")).toInt(),
                         site.value(QLatin1String("text")).toString().toUtf8()});
    }
    return sites;
}

std::vector<BrowserProfile> profilesIn(const QByteArray &answer)
{
    std::vector<BrowserProfile> profiles;
    for (const auto &value : QJsonDocument::fromJson(answer).array()) {
        const QJsonObject profile = value.toObject();
        const auto text = [&profile](const char *key) {
            return profile.value(QLatin1String(key)).toString();
        };
        profiles.push_back({text("browser"), text("profile"), text("reader"), text("folder")});
    }
    return profiles;
}

/// @throws CookieImportError
CookieJar saveOne(const HostCookies &cookies)
{
    try {
        const std::optional<QUrl> file = cookieFileURL(cookies.host);
        if (!file) {
            throw CookieImportError(Kind::notASite, cookies.host, {});
        }
        QFile::setPermissions(cookiesDirectory().toLocalFile(),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        if (const auto reason = writeCookieFile(file->toLocalFile(), cookies.file)) {
            throw CookieImportError(Kind::unsaved, cookies.host, *reason);
        }
        return {cookies.host, *file, QDateTime::currentDateTimeUtc()};
    } catch (const std::system_error &error) {
        throw CookieImportError(Kind::unsaved, cookies.host, QString::fromUtf8(error.what()));
    }
}

void saveAll(const std::shared_ptr<ModelContainer> &container,
             const std::vector<HostCookies> &confirmed)
{
    ModelContext context(container);
    try {
        for (const HostCookies &cookies : confirmed) {
            context.insert(saveOne(cookies));
        }
    } catch (const CookieImportError &) {
        (void)context.save(); // the files that are there are known
        throw;
    }
    if (!context.save()) {
        throw CookieImportError(Kind::unsaved, confirmed.back().host,
                                CookieImport::tr("the library cannot be written to"));
    }
}

}

QString CookieImportError::describe(Kind kind, const QString &host, const QString &source)
{
    switch (kind) {
    case Kind::notASite:
        return tr("“%1” is not the address of a site.").arg(host);
    case Kind::missing:
        return tr("The cookies of %1 are no longer there.").arg(source);
    case Kind::unreadable:
        return tr("The cookies of %1 could not be read.").arg(source);
    case Kind::locked:
        return tr("The cookies of %1 are locked with the desktop's keyring. Export them to a "
                  "cookies.txt file and import that.")
            .arg(source);
    case Kind::tooLarge:
        return tr("%1 is too large for a file of cookies.").arg(source);
    case Kind::notCookies:
        return tr("%1 is not in the Netscape cookies.txt format.").arg(source);
    case Kind::none:
        return tr("There are no cookies for %1 in %2. Sign in to the site there first.")
            .arg(host, source);
    case Kind::unsaved:
        break;
    }
    return tr("The cookies of %1 could not be saved: %2.").arg(host, source);
}

QString CookieImport::hostOf(const QString &typed)
{
    const QString text = typed.trimmed();
    const bool isAddress = text.contains(QLatin1String("://"));
    const QUrl url(isAddress ? text : QStringLiteral("https://") + text);
    if (!url.isValid() || url.host().isEmpty()) {
        throw CookieImportError(Kind::notASite, text, {});
    }
    return url.host();
}

QCoro::Task<std::vector<BrowserProfile>> CookieImport::browsers() const
{
    const QByteArray answer = co_await m_reader.browsers();
    co_return profilesIn(answer);
}

QCoro::Task<std::vector<HostCookies>> CookieImport::readBrowser(BrowserProfile profile,
                                                                QString host) const
{
    const QStringList hosts = siblingHosts(host);
    const QStringList ascii = asciiHosts(hosts);
    const QByteArray answer = co_await m_reader.fromBrowser(profile.reader, profile.folder, ascii);
    co_return sitesOf(answer, hosts, profile.browser);
}

QCoro::Task<std::vector<HostCookies>> CookieImport::readFile(QUrl file, QString host) const
{
    const QStringList hosts = siblingHosts(host);
    const QStringList ascii = asciiHosts(hosts);
    const QByteArray answer = co_await m_reader.fromFile(file.toLocalFile(), ascii);
    co_return sitesOf(answer, hosts, file.fileName());
}

QCoro::Task<void> CookieImport::save(std::vector<HostCookies> confirmed) const
{
    if (!m_container) {
        const QString host = confirmed.empty() ? QString() : confirmed.front().host;
        throw CookieImportError(Kind::unsaved, host, tr("the library cannot be opened"));
    }
    auto promise = std::make_shared<QPromise<void>>();
    QFuture<void> saved = promise->future();
    storeQueue().async([promise, container = m_container, confirmed] {
        promise->start();
        try {
            saveAll(container, confirmed);
        } catch (...) {
            promise->setException(std::current_exception());
        }
        promise->finish();
    });
    co_await saved;
}

}
