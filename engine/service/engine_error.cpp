// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/service/engine_error.h"

#include <utility>

namespace veltro {

EngineError::EngineError(Kind kind, QString message)
    : m_kind(kind), m_message(std::move(message)), m_what(description().toStdString())
{}

EngineError EngineError::bootstrapFailed(QString message)
{
    return {Kind::bootstrapFailed, std::move(message)};
}

EngineError EngineError::probeFailed(QString message)
{
    return {Kind::probeFailed, std::move(message)};
}

EngineError EngineError::downloadFailed(QString message)
{
    return {Kind::downloadFailed, std::move(message)};
}

EngineError EngineError::noFormats()
{
    return {Kind::noFormats, {}};
}

EngineError EngineError::drmProtected()
{
    return {Kind::drmProtected, {}};
}

QString EngineError::kindName() const
{
    switch (m_kind) {
    case Kind::bootstrapFailed:
        return QStringLiteral("bootstrapFailed");
    case Kind::probeFailed:
        return QStringLiteral("probeFailed");
    case Kind::downloadFailed:
        return QStringLiteral("downloadFailed");
    case Kind::noFormats:
        return QStringLiteral("noFormats");
    case Kind::drmProtected:
        return QStringLiteral("drmProtected");
    }
    return {};
}

QString EngineError::description() const
{
    switch (m_kind) {
    case Kind::bootstrapFailed:
        return QStringLiteral("Engine could not start: ") + m_message;
    case Kind::probeFailed:
        return QStringLiteral("Could not read media info: ") + m_message;
    case Kind::downloadFailed:
        return QStringLiteral("Download failed: ") + m_message;
    case Kind::noFormats:
        return QStringLiteral("No downloadable formats were found.");
    case Kind::drmProtected:
        return QStringLiteral("This video is DRM-protected and can't be saved.");
    }
    return {};
}

}
