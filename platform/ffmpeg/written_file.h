// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <string>
#include <sys/types.h>

namespace veltro::ffmpeg {

/// The regular file that a run writes, kept only when the run says so. A device, a pipe or a link
/// that stands under the name is never removed.
class WrittenFile {
public:
    /// @param path without a protocol.
    explicit WrittenFile(std::string path) : m_path(std::move(path)) {}
    ~WrittenFile();
    WrittenFile(const WrittenFile &) = delete;
    WrittenFile &operator=(const WrittenFile &) = delete;

    [[nodiscard]] const std::string &path() const { return m_path; }
    [[nodiscard]] bool exists() const;
    /// The file has been created, or emptied, under the path.
    void opened();
    /// The other file is going to be moved here.
    void comesFrom(const WrittenFile &other);
    void keep() { m_isKept = true; }

private:
    const std::string m_path;
    bool m_isOurs = false;
    bool m_isKept = false;
    dev_t m_device = 0;
    ino_t m_inode = 0;
};

}
