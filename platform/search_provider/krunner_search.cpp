// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/search_provider/krunner_search.h"

#include "platform/program_identity.h"
#include "platform/search_index.h"
#include "platform/search_provider/program_call.h"

#include <QDBusMetaType>

#include <utility>

namespace veltro {
namespace {

constexpr int mostRunnerMatches = 10;
// The runner's own kinds of match.
constexpr uint possibleMatch = 30;
constexpr uint exactMatch = 100;

}

QDBusArgument &operator<<(QDBusArgument &argument, const RunnerMatch &match)
{
    argument.beginStructure();
    argument << match.id << match.text << match.iconName << match.type << match.relevance
             << match.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, RunnerMatch &match)
{
    argument.beginStructure();
    argument >> match.id >> match.text >> match.iconName >> match.type >> match.relevance >>
        match.properties;
    argument.endStructure();
    return argument; // NOLINT(bugprone-return-const-ref-from-parameter): as operators do
}

QDBusArgument &operator<<(QDBusArgument &argument, const RunnerAction &action)
{
    argument.beginStructure();
    argument << action.id << action.text << action.iconName;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, RunnerAction &action)
{
    argument.beginStructure();
    argument >> action.id >> action.text >> action.iconName;
    argument.endStructure();
    return argument; // NOLINT(bugprone-return-const-ref-from-parameter): as operators do
}

KRunnerSearch::KRunnerSearch(const SearchIndex &index, QObject *parent)
    : QObject(parent), m_index(index)
{
    qDBusRegisterMetaType<RunnerMatch>();
    qDBusRegisterMetaType<RunnerMatches>();
    qDBusRegisterMetaType<RunnerAction>();
    qDBusRegisterMetaType<RunnerActions>();
}

RunnerActions KRunnerSearch::Actions()
{
    Q_EMIT used();
    return {};
}

RunnerMatches KRunnerSearch::Match(const QString &query)
{
    Q_EMIT used();
    const QStringList terms = query.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    RunnerMatches matches;
    double relevance = 0.9;
    for (const SearchableItem &item : m_index.search(terms, mostRunnerMatches)) {
        RunnerMatch match;
        match.id = item.uniqueIdentifier;
        match.text = item.title;
        match.iconName = programIdentifier();
        match.type = foldedForSearch(item.title) == foldedForSearch(query.trimmed())
                         ? exactMatch
                         : possibleMatch;
        match.relevance = relevance;
        match.properties.insert(QStringLiteral("subtext"),
                                item.contentDescription.value_or(QString()));
        if (item.contentURL) {
            match.properties.insert(QStringLiteral("urls"),
                                    QStringList{item.contentURL->toString(QUrl::FullyEncoded)});
        }
        matches += match;
        relevance -= 0.05; // the index's order
    }
    return matches;
}

void KRunnerSearch::Run(const QString &match, const QString &)
{
    Q_EMIT used();
    QVariantMap startData;
    if (const QString token = std::exchange(m_activationToken, QString()); !token.isEmpty()) {
        startData.insert(QStringLiteral("activation-token"), token);
    }
    openInProgram(match, startData);
}

void KRunnerSearch::SetActivationToken(const QString &token)
{
    m_activationToken = token;
}

}
