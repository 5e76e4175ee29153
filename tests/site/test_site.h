// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QByteArray>
#include <QList>
#include <QProcess>
#include <QString>
#include <QUrl>

namespace veltro {

/// The test site, running for as long as this object lives: pages on the loopback address that
/// yield every kind of media and of trouble (README.md beside this file lists them).
///
/// Made and destroyed on one thread. Everything else may be called on any thread, needs no event
/// loop and blocks for one answer of the site. The first site of a build tree makes the media,
/// which takes some seconds. A site that does not come up ends the test program with its words.
class TestSite {
public:
    TestSite();
    ~TestSite();
    TestSite(const TestSite &) = delete;
    TestSite &operator=(const TestSite &) = delete;

    /// The address of a page, `path` as the tables have it: "/plain", "/held?at=5000".
    [[nodiscard]] QUrl url(const QString &path) const;
    /// An address where every connection is refused.
    [[nodiscard]] QUrl deadUrl(const QString &path) const;

    /// One request since the start or the last reset.
    struct Request {
        QString path; ///< decoded, without the query
        QString range;
    };
    /// The requests, oldest first.
    [[nodiscard]] QList<Request> log() const;
    /// How many requests came for this path.
    [[nodiscard]] qsizetype requestCount(const QString &path) const;

    /// Forgets the log, the rules and the live streams' clocks, and holds again what is held.
    void reset() const;
    /// Lets every held request go on, until the reset.
    void release() const;
    /// Adds a rule in the words of the README: "match=index2.ts&hold=0".
    void addRule(const QString &rule) const;

    /// A cookie file by name: "session" opens /cookies, "other" does not.
    [[nodiscard]] static QString cookieFile(const QString &name);

private:
    QByteArray ask(const QString &address) const;

    QProcess m_process;
    // Constant after construction.
    QString m_plain;
    QString m_dead;
};

}
