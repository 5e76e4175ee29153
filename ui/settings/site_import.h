// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "library/cookie_import.h"

#include <QCoro/QCoroTask>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <vector>

namespace veltro {

/// How a site's cookies are looked for and saved. Each waits; each throws what may be shown.
struct SiteImportSteps {
    std::function<QCoro::Task<std::vector<BrowserProfile>>()> browsers;
    std::function<QCoro::Task<std::vector<HostCookies>>(BrowserProfile, QString)> readBrowser;
    std::function<QCoro::Task<std::vector<HostCookies>>(QUrl, QString)> readFile;
    std::function<QCoro::Task<void>(std::vector<HostCookies>)> save;
};

/// The steps by which a person adds a logged-in site: a host and a source, what was found there,
/// and the saving of it. One step at a time; a step that fails leaves its reason. Main thread only.
class SiteImport : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes one")
    /// The profiles of browsers, by name; a file is always possible besides.
    Q_PROPERTY(QStringList profiles READ profiles NOTIFY changed)
    Q_PROPERTY(bool isBusy READ isBusy NOTIFY changed)
    /// Why the last step failed; empty otherwise.
    Q_PROPERTY(QString error READ error NOTIFY changed)
    /// What would be saved: "video.example, 12 cookies".
    Q_PROPERTY(QStringList found READ found NOTIFY changed)
public:
    explicit SiteImport(SiteImportSteps steps, QObject *parent = nullptr);

    [[nodiscard]] QStringList profiles() const;
    [[nodiscard]] bool isBusy() const { return m_isBusy; }
    [[nodiscard]] const QString &error() const { return m_error; }
    [[nodiscard]] QStringList found() const;

public Q_SLOTS:
    /// Forgets what was found, and lists the browsers.
    void begin();
    void readBrowser(int profile, const QString &site);
    void readFile(const QUrl &file, const QString &site);
    /// Forgets what was found; the site or the source is another one now.
    void discard();
    void save();

Q_SIGNALS:
    void changed();
    void saved();

private:
    using Self = QPointer<SiteImport>;
    using Read = std::function<QCoro::Task<std::vector<HostCookies>>(QString)>;

    static QCoro::Task<void> list(Self self);
    static QCoro::Task<void> look(Self self, Read read, QString site);
    static QCoro::Task<void> keep(Self self, std::vector<HostCookies> cookies);
    [[nodiscard]] bool start();
    void end(const QString &error);

    const SiteImportSteps m_steps;
    std::vector<BrowserProfile> m_profiles;
    std::vector<HostCookies> m_found;
    bool m_isBusy = false;
    QString m_error;
};

}
