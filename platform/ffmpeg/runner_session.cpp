// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/runner_session.h"

#include "platform/ffmpeg/information.h"
#include "platform/ffmpeg/libav.h"
#include "platform/ffmpeg/session_log.h"

#include <exception>

namespace veltro::ffmpeg {
namespace {

// Answers the information commands and refuses every other.
class RunnerSession : public Session {
public:
    int run(std::span<const std::string> arguments) noexcept override
    try {
        const std::string option = arguments.empty() ? std::string() : arguments.front();
        if (option == "-version") {
            m_output = versionText("ffmpeg");
            return 0;
        }
        m_log.write(AV_LOG_INFO, banner("ffmpeg"));
        if (option == "-bsfs") {
            m_output = bitstreamFiltersText();
            return 0;
        }
        m_log.write(AV_LOG_ERROR, "Not supported by this program: '" + option + "'\n");
        return 1;
    } catch (const std::exception &) {
        return 1;
    }
    void cancel() noexcept override {}
    [[nodiscard]] RunProgress progress() const noexcept override { return {}; }
    [[nodiscard]] std::string log() const override { return m_log.text(); }
    [[nodiscard]] std::string output() const override { return m_output; }

private:
    SessionLog m_log;
    std::string m_output;
};

} // namespace

std::unique_ptr<Session> makeRunnerSession()
{
    return std::make_unique<RunnerSession>();
}

} // namespace veltro::ffmpeg
