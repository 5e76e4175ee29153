// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/site_import.h"

#include "coordination/detach.h"

#include <exception>
#include <utility>

namespace veltro {

SiteImport::SiteImport(SiteImportSteps steps, QObject *parent)
    : QObject(parent), m_steps(std::move(steps))
{}

QStringList SiteImport::profiles() const
{
    QStringList names;
    for (const BrowserProfile &profile : m_profiles) {
        names << (profile.profile.isEmpty() ? profile.browser
                                            : tr("%1, %2").arg(profile.browser, profile.profile));
    }
    return names;
}

QStringList SiteImport::found() const
{
    QStringList lines;
    for (const HostCookies &cookies : m_found) {
        lines << (cookies.count == 1 ? tr("%1, 1 cookie").arg(cookies.host)
                                     : tr("%1, %2 cookies").arg(cookies.host).arg(cookies.count));
    }
    return lines;
}

bool SiteImport::start()
{
    if (m_isBusy) {
        return false;
    }
    m_isBusy = true;
    m_error.clear();
    m_found.clear();
    Q_EMIT changed();
    return true;
}

void SiteImport::end(const QString &error)
{
    m_isBusy = false;
    m_error = error;
    Q_EMIT changed();
}

void SiteImport::begin()
{
    if (start()) {
        detach(list(this), QStringLiteral("the browsers"));
    }
}

void SiteImport::readBrowser(int profile, const QString &site)
{
    if (profile < 0 || static_cast<std::size_t>(profile) >= m_profiles.size() || !start()) {
        return;
    }
    Read read = [readBrowser = m_steps.readBrowser,
                 source = m_profiles[static_cast<std::size_t>(profile)]](QString host) {
        return readBrowser(source, std::move(host));
    };
    detach(look(this, std::move(read), site), QStringLiteral("a browser's cookies"));
}

void SiteImport::readFile(const QUrl &file, const QString &site)
{
    if (start()) {
        Read read = [readFile = m_steps.readFile, file](QString host) {
            return readFile(file, std::move(host));
        };
        detach(look(this, std::move(read), site), QStringLiteral("a file's cookies"));
    }
}

void SiteImport::discard()
{
    if (!m_isBusy && (!m_found.empty() || !m_error.isEmpty())) {
        m_found.clear();
        end({});
    }
}

void SiteImport::save()
{
    std::vector<HostCookies> cookies = m_found;
    if (!cookies.empty() && start()) {
        detach(keep(this, std::move(cookies)), QStringLiteral("a site's cookies"));
    }
}

QCoro::Task<void> SiteImport::list(Self self)
{
    const Self own = std::move(self);
    const auto browsers = own->m_steps.browsers;
    std::vector<BrowserProfile> profiles;
    std::exception_ptr error;
    try {
        const QCoro::Task<std::vector<BrowserProfile>> task = browsers();
        profiles = co_await task;
    } catch (...) {
        error = std::current_exception();
    }
    if (own) {
        own->m_profiles = std::move(profiles);
        own->end(error ? errorText(error) : QString());
    }
}

QCoro::Task<void> SiteImport::look(Self self, Read read, QString site)
{
    const Self own = std::move(self);
    const Read reader = std::move(read);
    std::vector<HostCookies> cookies;
    std::exception_ptr error;
    try {
        const QCoro::Task<std::vector<HostCookies>> task = reader(CookieImport::hostOf(site));
        cookies = co_await task;
    } catch (...) {
        error = std::current_exception();
    }
    if (own) {
        own->m_found = std::move(cookies);
        own->end(error ? errorText(error) : QString());
    }
}

QCoro::Task<void> SiteImport::keep(Self self, std::vector<HostCookies> cookies)
{
    const Self own = std::move(self);
    const auto save = own->m_steps.save;
    std::exception_ptr error;
    try {
        const QCoro::Task<void> task = save(std::move(cookies));
        co_await task;
    } catch (...) {
        error = std::current_exception();
    }
    if (!own) {
        co_return;
    }
    own->end(error ? errorText(error) : QString());
    if (!error) {
        Q_EMIT own->saved();
    }
}

}
