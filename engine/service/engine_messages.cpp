// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/service/engine_messages.h"

#include "engine/bridge/python.h"

#include <QTextBoundaryFinder>

#include <string>

namespace veltro {
namespace {

constexpr int longestMessage = 220; // user-perceived characters

/// Without spaces and tabs at both ends; other white space is part of the text.
QString trimmedBlanks(const QString &text)
{
    const auto isBlank = [](QChar c) { return c == u' ' || c == u'\t'; };
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && isBlank(text[begin])) {
        ++begin;
    }
    while (end > begin && isBlank(text[end - 1])) {
        --end;
    }
    return text.mid(begin, end - begin);
}

QString withoutMarker(const QString &text)
{
    const QString marker = QStringLiteral("ERROR:");
    const auto at = text.indexOf(marker);
    return at < 0 ? text : trimmedBlanks(text.mid(at + marker.size()));
}

/// Drops "[extractor] identifier:" from the front.
QString withoutOrigin(const QString &text)
{
    const auto open = text.indexOf(u'[');
    const auto close = text.indexOf(u']');
    if (open < 0 || close < open) {
        return text;
    }
    const QString rest = trimmedBlanks(text.mid(close + 1));
    const auto colon = rest.indexOf(u':');
    return colon < 0 ? rest : trimmedBlanks(rest.mid(colon + 1));
}

QString shortened(const QString &text)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    for (int count = 0; count < longestMessage; ++count) {
        if (finder.toNextBoundary() < 0) {
            return text;
        }
    }
    const auto end = finder.position();
    return end >= text.size() ? text : text.left(end) + u'…';
}

}

QString rawEngineMessage(const std::exception &error)
{
    const auto *const raised = dynamic_cast<const PythonError *>(&error);
    if (raised == nullptr || raised->kind() != PythonError::Kind::exception) {
        return QString::fromUtf8(error.what());
    }
    const PythonObject value = raised->value();
    const std::optional<std::string> text = value.to<std::string>();
    return QString::fromStdString(text ? *text : value.description());
}

QString cleanEngineMessage(const std::exception &error)
{
    return cleanEngineText(rawEngineMessage(error));
}

QString cleanEngineText(QString text)
{
    text = withoutOrigin(withoutMarker(text));
    if (text.toLower().startsWith(QLatin1String("unsupported url"))) {
        text = QStringLiteral(
            "This page isn't a video, or the site needs an active subscription to access it.");
    }
    return shortened(text);
}

bool isDRMFailure(const std::exception &error)
{
    const QString text = rawEngineMessage(error).toLower();
    return text.contains(QLatin1String("drm protected")) ||
           text.contains(QLatin1String("drm-protected"));
}

}
