// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QDBusArgument>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

namespace veltro {

class SearchIndex;

/// A match as KDE's runner takes it.
struct RunnerMatch {
    QString id;
    QString text;
    QString iconName;
    uint type = 0;
    double relevance = 0; ///< 0 to 1
    QVariantMap properties;
};
using RunnerMatches = QList<RunnerMatch>;
QDBusArgument &operator<<(QDBusArgument &argument, const RunnerMatch &match);
const QDBusArgument &operator>>(const QDBusArgument &argument, RunnerMatch &match);

/// An action that a match offers; ours offer none but being opened.
struct RunnerAction {
    QString id;
    QString text;
    QString iconName;
};
using RunnerActions = QList<RunnerAction>;
QDBusArgument &operator<<(QDBusArgument &argument, const RunnerAction &action);
const QDBusArgument &operator>>(const QDBusArgument &argument, RunnerAction &action);

/// The library in KDE's runner. Exported on the session bus; main thread only.
class KRunnerSearch : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.krunner1")
public:
    explicit KRunnerSearch(const SearchIndex &index, QObject *parent = nullptr);

Q_SIGNALS:
    // Not exported: the helper ends when it has not been used for a while.
    void used();

public Q_SLOTS:
    // Named by the interface.
    veltro::RunnerActions Actions();
    veltro::RunnerMatches Match(const QString &query);
    void Run(const QString &match, const QString &action);
    void SetActivationToken(const QString &token);
    void Teardown() {}

private:
    const SearchIndex &m_index;
    QString m_activationToken; // for the next Run
};

}

Q_DECLARE_METATYPE(veltro::RunnerMatch)
Q_DECLARE_METATYPE(veltro::RunnerAction)
