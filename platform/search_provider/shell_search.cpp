// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/search_provider/shell_search.h"

#include "platform/program_identity.h"
#include "platform/search_index.h"
#include "platform/search_provider/program_call.h"

#include <QDBusMetaType>

namespace veltro {
namespace {

// The shell shows five, and says how many more there are.
constexpr int mostShellResults = 50;

/// The shell's event time, in the form in which a start-up id carries it.
QVariantMap startDataAt(uint timestamp)
{
    return {{QStringLiteral("desktop-startup-id"), QStringLiteral("veltro_TIME%1").arg(timestamp)}};
}

}

ShellSearch::ShellSearch(const SearchIndex &index, QObject *parent)
    : QObject(parent), m_index(index)
{
    qDBusRegisterMetaType<QList<QVariantMap>>();
}

QStringList ShellSearch::GetInitialResultSet(const QStringList &terms)
{
    Q_EMIT used();
    QStringList results;
    for (const SearchableItem &item : m_index.search(terms, mostShellResults)) {
        results += item.uniqueIdentifier;
    }
    return results;
}

QStringList ShellSearch::GetSubsearchResultSet(const QStringList &, const QStringList &terms)
{
    // Looking again is quick, and finds what the limit cut off before.
    return GetInitialResultSet(terms);
}

QList<QVariantMap> ShellSearch::GetResultMetas(const QStringList &results)
{
    Q_EMIT used();
    QList<QVariantMap> metas;
    for (const SearchableItem &item : m_index.items(results)) {
        QVariantMap meta{{QStringLiteral("id"), item.uniqueIdentifier},
                         {QStringLiteral("name"), item.title},
                         {QStringLiteral("gicon"),
                          item.thumbnailURL ? item.thumbnailURL->toString(QUrl::FullyEncoded)
                                            : programIdentifier()}};
        if (item.contentDescription) {
            meta.insert(QStringLiteral("description"), *item.contentDescription);
        }
        metas += meta;
    }
    return metas;
}

void ShellSearch::ActivateResult(const QString &result, const QStringList &, uint timestamp)
{
    Q_EMIT used();
    openInProgram(result, startDataAt(timestamp));
}

void ShellSearch::LaunchSearch(const QStringList &terms, uint timestamp)
{
    Q_EMIT used();
    searchInProgram(terms.join(QLatin1Char(' ')), startDataAt(timestamp));
}

}
