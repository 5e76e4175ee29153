// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <mutex>
#include <optional>
#include <string>
#include <utility>

namespace veltro {

/// The file path that yt-dlp reported last in a run, UTF-8; the last writer wins. Any thread.
class PathBox {
public:
    void set(std::string path)
    {
        const std::lock_guard guard(m_lock);
        m_value = std::move(path);
    }
    [[nodiscard]] std::optional<std::string> value() const
    {
        const std::lock_guard guard(m_lock);
        return m_value;
    }

private:
    mutable std::mutex m_lock;
    std::optional<std::string> m_value; // guarded by m_lock
};

}
