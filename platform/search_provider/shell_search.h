// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QObject>
#include <QStringList>
#include <QVariantMap>

namespace veltro {

class SearchIndex;

/// The library in the search of GNOME's shell. Exported on the session bus; main thread only.
class ShellSearch : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.gnome.Shell.SearchProvider2")
public:
    explicit ShellSearch(const SearchIndex &index, QObject *parent = nullptr);

Q_SIGNALS:
    // Not exported: the helper ends when it has not been used for a while.
    void used();

public Q_SLOTS:
    // Named by the interface. A result is the identifier of an item.
    QStringList GetInitialResultSet(const QStringList &terms);
    QStringList GetSubsearchResultSet(const QStringList &previous, const QStringList &terms);
    QList<QVariantMap> GetResultMetas(const QStringList &results);
    void ActivateResult(const QString &result, const QStringList &terms, uint timestamp);
    void LaunchSearch(const QStringList &terms, uint timestamp);

private:
    const SearchIndex &m_index;
};

}
