// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "engine/media/download_event.h"
#include "engine/media/media_info.h"

#include <QJsonObject>

#include <exception>

namespace veltro {

// The engine's records as JSON; absent fields are left out.

[[nodiscard]] QJsonObject toJson(const MediaInfo &info);
[[nodiscard]] QJsonObject toJson(const DownloadEvent &event);

/// {"event": "error", "kind": ..., "text": ...}; the kind is "cancelled" for a cancelled run, and
/// "other" for what is not one of the engine's own errors.
[[nodiscard]] QJsonObject errorToJson(const std::exception_ptr &error);

/// Writes one object as one line to standard output, at once.
void printJsonLine(const QJsonObject &object);

}
