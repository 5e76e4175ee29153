// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/runner_session.h"

#include "platform/ffmpeg/command_line.h"
#include "platform/ffmpeg/command_run.h"
#include "platform/ffmpeg/information.h"
#include "platform/ffmpeg/libav.h"
#include "platform/ffmpeg/library_options.h"
#include "platform/ffmpeg/locale_scope.h"
#include "platform/ffmpeg/run_control.h"
#include "platform/ffmpeg/session_log.h"
#include "platform/ffmpeg/worker_thread.h"

#include <algorithm>
#include <exception>
#include <mutex>
#include <thread>

namespace veltro::ffmpeg {
namespace {

constexpr int codeOfFailure = 1;
constexpr int codeOfCancel = 255;

/// Does the work on a thread of its own, whose priority and locale may differ from the caller's.
class RunnerSession : public Session {
public:
    int run(std::span<const std::string> arguments) noexcept override
    try {
        int code = codeOfFailure;
        std::thread worker([&] { code = runHere(arguments); });
        worker.join();
        return code;
    } catch (const std::exception &) { // there is no thread to be had
        return codeOfFailure;
    }

    void cancel() noexcept override { m_control.cancel(); }
    [[nodiscard]] RunProgress progress() const noexcept override { return m_control.progress(); }
    [[nodiscard]] std::string log() const override { return m_log.text(); }
    [[nodiscard]] std::string output() const override
    {
        const std::lock_guard guard(m_lock);
        return m_output;
    }

private:
    // The border of the worker thread: nothing is thrown past it.
    int runHere(std::span<const std::string> arguments) noexcept
    {
        nameThread("ffmpeg-run");
        const LocaleScope locale;
        const SessionLog::Scope log(m_log);
        try {
            execute(arguments);
            return 0;
        } catch (const CommandCancelled &) {
            m_log.write(AV_LOG_INFO, "Cancelled\n");
            return codeOfCancel;
        } catch (const CommandFailed &failure) {
            m_log.write(AV_LOG_FATAL, std::string(failure.what()) + '\n');
            return m_control.isCancelled() ? codeOfCancel : failure.code();
        } catch (const std::exception &) {
            m_log.write(AV_LOG_FATAL, "Cannot allocate memory\n");
            return codeOfFailure;
        }
    }

    void execute(std::span<const std::string> arguments)
    {
        applyLogLevel(arguments);
        const auto hasOption = [arguments](const char *option) {
            return std::find(arguments.begin(), arguments.end(), option) != arguments.end();
        };
        if (!hasOption("-hide_banner") && !hasOption("-version")) {
            m_log.write(AV_LOG_INFO, banner("ffmpeg"));
        }
        const CommandLine command = parseCommandLine(arguments, isLibraryOption);
        if (command.information.empty()) {
            runCommand(command, m_log, m_control);
            return;
        }
        const std::lock_guard guard(m_lock);
        m_output =
            command.information == "version" ? versionText("ffmpeg") : bitstreamFiltersText();
    }

    // Holds from the first line on, before the rest of the command line is looked at.
    void applyLogLevel(std::span<const std::string> arguments)
    {
        for (std::size_t i = 0; i + 1 < arguments.size(); ++i) {
            if (arguments[i] != "-loglevel" && arguments[i] != "-v") {
                continue;
            }
            const auto level = parseLogLevel(arguments[i + 1], m_log.level());
            if (!level) {
                throw CommandFailed("Invalid loglevel \"" + arguments[i + 1] + "\".");
            }
            m_log.setLevel(*level);
        }
    }

    SessionLog m_log;
    RunControl m_control;
    mutable std::mutex m_lock;
    std::string m_output; // guarded by m_lock
};

}

std::unique_ptr<Session> makeRunnerSession()
{
    return std::make_unique<RunnerSession>();
}

}
