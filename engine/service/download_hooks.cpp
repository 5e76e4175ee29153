// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/service/download_hooks.h"

#include "engine/bridge/python.h"
#include "engine/service/engine_state.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace veltro {
namespace {

/// A key's value in the wanted type; nothing when it is missing or of another type.
template <typename Value>
std::optional<Value> read(const PythonObject &dictionary, const char *key)
{
    const std::optional<PythonObject> value = dictionary.checking()[key];
    return value ? value->to<Value>() : std::nullopt;
}

std::string readText(const PythonObject &dictionary, const char *key)
{
    return read<std::string>(dictionary, key).value_or(std::string());
}

DownloadProgressed progressOf(const PythonObject &report)
{
    DownloadProgressed progress;
    progress.bytesDone = read<std::int64_t>(report, "downloaded_bytes").value_or(0);
    progress.bytesTotal = read<std::int64_t>(report, "total_bytes");
    if (!progress.bytesTotal) {
        progress.bytesTotal = read<std::int64_t>(report, "total_bytes_estimate");
    }
    progress.speed = read<double>(report, "speed");
    progress.eta = read<double>(report, "eta");
    progress.fragmentIndex = read<std::int64_t>(report, "fragment_index");
    progress.fragmentCount = read<std::int64_t>(report, "fragment_count");
    return progress;
}

void reportProgress(const HookContext &context, const PythonObject &report)
{
    const std::string status = readText(report, "status");
    if (status == "downloading") {
        context.events.yield(progressOf(report));
    } else if (status == "finished") {
        if (std::optional<std::string> file = read<std::string>(report, "filename")) {
            context.finalPath->set(std::move(*file));
        }
    }
}

void stopIfCancelled(const HookContext &context)
{
    if (context.state->isCancelled(context.id)) {
        const PythonObject cancelled = Python()
                                           .attemptImport("yt_dlp.utils")
                                           .throwing()
                                           .attr("DownloadError")
                                           .throwing()
                                           .call({"Cancelled"});
        throw PythonError::exception(cancelled, std::nullopt);
    }
}

void reportPostProcessing(const HookContext &context, const PythonObject &report)
{
    const std::string status = readText(report, "status");
    if (status == "started") {
        const std::string stage = read<std::string>(report, "postprocessor").value_or("processing");
        context.events.yield(DownloadPostProcessing{QString::fromStdString(stage)});
    } else if (status == "finished") {
        const std::optional<PythonObject> info = report.checking()["info_dict"];
        std::optional<std::string> file =
            info ? read<std::string>(*info, "filepath") : std::nullopt;
        if (file) {
            context.finalPath->set(std::move(*file));
        }
    }
}

}

PythonFunction makeProgressHook(HookContext context)
{
    return PythonFunction(
        [context = std::move(context)](const std::vector<PythonObject> &arguments) {
            if (!arguments.empty()) {
                reportProgress(context, arguments.front());
                stopIfCancelled(context);
            }
            return PythonObject::none();
        });
}

PythonFunction makePostprocessorHook(HookContext context)
{
    return PythonFunction(
        [context = std::move(context)](const std::vector<PythonObject> &arguments) {
            if (!arguments.empty()) {
                reportPostProcessing(context, arguments.front());
            }
            return PythonObject::none();
        });
}

}
