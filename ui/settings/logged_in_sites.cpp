// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/logged_in_sites.h"

#include <QJSEngine>

#include <utility>

namespace veltro {
namespace {

LoggedInSites *&sitesOfTheProgram()
{
    static LoggedInSites *sites = nullptr;
    return sites;
}

// Coroutines, so that the import lives as long as what it was asked.

QCoro::Task<std::vector<BrowserProfile>> listBrowsers(CookieImport cookies)
{
    const CookieImport own = std::move(cookies);
    const QCoro::Task<std::vector<BrowserProfile>> task = own.browsers();
    co_return co_await task;
}

QCoro::Task<std::vector<HostCookies>> readProfile(CookieImport cookies, BrowserProfile profile,
                                                  QString host)
{
    const CookieImport own = std::move(cookies);
    const QCoro::Task<std::vector<HostCookies>> task =
        own.readBrowser(std::move(profile), std::move(host));
    co_return co_await task;
}

QCoro::Task<std::vector<HostCookies>> readCookieFile(CookieImport cookies, QUrl file, QString host)
{
    const CookieImport own = std::move(cookies);
    const QCoro::Task<std::vector<HostCookies>> task =
        own.readFile(std::move(file), std::move(host));
    co_return co_await task;
}

QCoro::Task<void> saveCookies(CookieImport cookies, std::vector<HostCookies> found)
{
    const CookieImport own = std::move(cookies);
    const QCoro::Task<void> task = own.save(std::move(found));
    co_await task;
}

}

void setLoggedInSites(LoggedInSites *sites)
{
    sitesOfTheProgram() = sites;
}

LoggedInSites::LoggedInSites(YtDlpService &engine, QObject *parent)
    : QObject(parent), m_addition(steps(engine))
{}

void LoggedInSites::setContainer(std::shared_ptr<ModelContainer> container)
{
    m_container = std::move(container);
    m_jars.setContainer(m_container);
}

LoggedInSites *LoggedInSites::create(QQmlEngine *, QJSEngine *)
{
    Q_ASSERT(sitesOfTheProgram() != nullptr);
    QJSEngine::setObjectOwnership(sitesOfTheProgram(), QJSEngine::CppOwnership);
    return sitesOfTheProgram();
}

SiteImportSteps LoggedInSites::steps(YtDlpService &engine)
{
    // The container comes after the window, so each step takes what there is by then.
    const auto cookies = [this, service = &engine] { return CookieImport(*service, m_container); };
    return {
        [cookies] { return listBrowsers(cookies()); },
        [cookies](BrowserProfile profile, QString host) {
            return readProfile(cookies(), std::move(profile), std::move(host));
        },
        [cookies](QUrl file, QString host) {
            return readCookieFile(cookies(), std::move(file), std::move(host));
        },
        [cookies](std::vector<HostCookies> found) {
            return saveCookies(cookies(), std::move(found));
        },
    };
}

}
