// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "engine/service/cookie_reader.h"
#include "library/cookie_import_error.h"

#include <QUrl>

#include <memory>
#include <vector>

namespace veltro {

class ModelContainer;

/// One profile of an installed browser that has cookies.
struct BrowserProfile {
    QString browser; ///< "Firefox"
    QString profile; ///< what the user calls it
    QString reader;  ///< how its cookies are read
    QString folder;

    bool operator==(const BrowserProfile &) const = default;
};

/// The cookies that one host would receive.
struct HostCookies {
    QString host;
    int count = 0;
    QByteArray file; ///< the whole cookies.txt

    bool operator==(const HostCookies &) const = default;
};

/// Saves the cookies of a site, so that pages are asked for as the signed-in user: lists the
/// browsers, reads what the site has there or in a cookies.txt, and writes a jar for each host that
/// the user confirms. With www and without are two hosts to the engine and one site to a person, so
/// that reading yields both where both have cookies. Main thread only.
class CookieImport {
    Q_DECLARE_TR_FUNCTIONS(CookieImport)
public:
    /// Without a container nothing can be saved. The engine outlives what is under way.
    CookieImport(YtDlpService &engine, std::shared_ptr<ModelContainer> container)
        : m_reader(engine), m_container(std::move(container))
    {}

    /// The host that a person means by what was typed: a host or the address of a page.
    /// @throws CookieImportError notASite
    [[nodiscard]] static QString hostOf(const QString &typed);

    /// By browser, the profile that was used last first. @throws what the engine's start throws.
    [[nodiscard]] QCoro::Task<std::vector<BrowserProfile>> browsers() const;

    /// The cookies of a host, and of its sibling with or without www; the host itself first. Those
    /// without cookies are left out, and there is at least one.
    /// @throws CookieImportError, or what the engine's start throws
    [[nodiscard]] QCoro::Task<std::vector<HostCookies>> readBrowser(BrowserProfile profile,
                                                                    QString host) const;
    [[nodiscard]] QCoro::Task<std::vector<HostCookies>> readFile(QUrl file, QString host) const;

    /// Replaces each host's cookie file as a whole, and names it in its record.
    /// @throws CookieImportError unsaved
    [[nodiscard]] QCoro::Task<void> save(std::vector<HostCookies> confirmed) const;

private:
    CookieReader m_reader;
    std::shared_ptr<ModelContainer> m_container;
};

}
