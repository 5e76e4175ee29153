// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/transcode/ffmpeg_runner.h"

#include "platform/log.h"

#include <map>
#include <memory>
#include <mutex>
#include <unistd.h>

namespace veltro {
namespace {

/// The runs in progress, by the kernel's identifier of their thread. Never destroyed: a run may
/// still be in progress while the process ends.
struct RunningSessions {
    std::mutex lock;
    std::map<std::int64_t, ffmpeg::Session *> byThread; // guarded by lock; the run owns them
};

RunningSessions &runningSessions()
{
    static auto *sessions = new RunningSessions;
    return *sessions;
}

/// Lists a session for the length of a scope.
class RunningScope {
public:
    explicit RunningScope(ffmpeg::Session *session)
    {
        RunningSessions &sessions = runningSessions();
        const std::lock_guard guard(sessions.lock);
        sessions.byThread[m_thread] = session;
    }
    ~RunningScope()
    {
        RunningSessions &sessions = runningSessions();
        const std::lock_guard guard(sessions.lock);
        sessions.byThread.erase(m_thread);
    }
    RunningScope(const RunningScope &) = delete;
    RunningScope &operator=(const RunningScope &) = delete;

private:
    const std::int64_t m_thread = gettid();
};

std::string lastLine(const std::string &log)
{
    const auto end = log.find_last_not_of("\r\n");
    if (end == std::string::npos) {
        return {};
    }
    const auto begin = log.find_last_of("\r\n", end);
    return log.substr(begin == std::string::npos ? 0 : begin + 1, end - begin);
}

}

ffmpeg::CommandResult runFFmpegCommand(std::span<const std::string> arguments)
{
    ffmpeg::CommandResult result;
    try {
        const std::unique_ptr<ffmpeg::Session> session = ffmpeg::mediaTools().makeSession();
        const RunningScope running(session.get());
        const int code = session->run(arguments);
        result = {code, session->output(), session->log()};
    } catch (const ffmpeg::MediaToolsMissing &missing) {
        result = {-1, {}, missing.what()};
    }
    if (result.code != 0 && !result.log.empty()) {
        logLine(LogTag::ffmpeg, lastLine(result.log));
    }
    return result;
}

std::int32_t runFFmpeg(std::span<const std::string> arguments)
{
    return runFFmpegCommand(arguments).code;
}

void cancelFFmpeg(std::int64_t threadId)
{
    RunningSessions &sessions = runningSessions();
    const std::lock_guard guard(sessions.lock);
    if (const auto found = sessions.byThread.find(threadId); found != sessions.byThread.end()) {
        found->second->cancel();
    }
}

std::optional<ffmpeg::RunProgress> ffmpegProgress(std::int64_t threadId)
{
    RunningSessions &sessions = runningSessions();
    const std::lock_guard guard(sessions.lock);
    const auto found = sessions.byThread.find(threadId);
    return found == sessions.byThread.end() ? std::nullopt
                                            : std::optional(found->second->progress());
}

}
