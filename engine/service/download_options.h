// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "engine/bridge/python_object.h"
#include "engine/media/download_request.h"

#include <string>

namespace veltro {

/// The folder of a request, and its template within that folder, as file-system paths in UTF-8.
[[nodiscard]] std::string downloadsPath(const DownloadRequest &request);
[[nodiscard]] std::string templatePath(const DownloadRequest &request);

/// The options dictionary of a run. REQUIRES: inside an interpreter job. @throws PythonError
[[nodiscard]] PythonObject downloadOptions(const DownloadRequest &request,
                                           const PythonObject &progressHook,
                                           const PythonObject &postprocessorHook);

}
