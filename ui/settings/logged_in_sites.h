// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "library/cookie_jars_model.h"
#include "ui/settings/site_import.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <memory>

class QJSEngine;
class QQmlEngine;

namespace veltro {

class ModelContainer;
class YtDlpService;

/// The saved sites and the way to add one, for the settings in both their places.
/// Main thread only.
class LoggedInSites : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QObject *jars READ jars CONSTANT)
    Q_PROPERTY(veltro::SiteImport *addition READ addition CONSTANT)
public:
    /// The engine outlives this object.
    explicit LoggedInSites(YtDlpService &engine, QObject *parent = nullptr);

    /// What the list shows and new sites are written to; nothing can be saved without one.
    void setContainer(std::shared_ptr<ModelContainer> container);

    [[nodiscard]] CookieJarsModel *jars() { return &m_jars; }
    [[nodiscard]] SiteImport *addition() { return &m_addition; }
    Q_INVOKABLE void remove(const QString &host) { m_jars.removeJar(host); }

    /// For the QML engine, which asks for the object that setLoggedInSites() was given.
    static LoggedInSites *create(QQmlEngine *engine, QJSEngine *scripts);

private:
    [[nodiscard]] SiteImportSteps steps(YtDlpService &engine);

    std::shared_ptr<ModelContainer> m_container;
    CookieJarsModel m_jars;
    SiteImport m_addition;
};

/// What the singleton of a QML engine stands for; set before the engine loads its first file, and
/// outlives the engine.
void setLoggedInSites(LoggedInSites *sites);

}
