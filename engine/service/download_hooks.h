// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "engine/bridge/python_function.h"
#include "engine/media/download_event.h"
#include "engine/service/event_stream.h"
#include "engine/service/path_box.h"

#include <QUuid>

#include <memory>

namespace veltro {

class EngineState;

/// What the hooks of one run share with it. Copies share everything.
struct HookContext {
    QUuid id;
    std::shared_ptr<const EngineState> state;
    std::shared_ptr<PathBox> finalPath;
    EventStream<DownloadEvent>::Producer events;
};

/// What yt-dlp calls while it downloads: reports progress, notes where files end up, and raises
/// DownloadError("Cancelled") in the interpreter once the run is to stop.
/// Called on the run's thread, inside its job.
[[nodiscard]] PythonFunction makeProgressHook(HookContext context);

/// What yt-dlp calls around each post-processor: reports the step and notes the resulting file.
/// Called on the run's thread, inside its job.
[[nodiscard]] PythonFunction makePostprocessorHook(HookContext context);

}
