// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/file_look.h"

#include "platform/ffmpeg/safe_input.h"

namespace veltro::ffmpeg {

FileLook::FileLook(const std::filesystem::path &file, std::chrono::steady_clock::duration allowed)
    : m_bound(m_log), m_limit(allowed)
{
    m_log.setLevel(AV_LOG_QUIET);
    LocalInputOptions how;
    how.log = &m_log;
    how.interrupt = m_limit.interrupt();
    if (openLocalInput("file:" + file.native(), how, m_input) < 0) {
        m_input.reset();
    }
}

}
