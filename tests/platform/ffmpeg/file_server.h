// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QByteArray>
#include <QDir>

#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace veltro::ffmpeg {

/// Serves the files of a folder over HTTP on the loopback address, each whole, a connection at a
/// time. A name that is not there is answered with 404, "/stall" with the beginning of an answer
/// that never goes on. Tests only.
class FileServer {
public:
    explicit FileServer(const QDir &folder);
    ~FileServer();
    FileServer(const FileServer &) = delete;
    FileServer &operator=(const FileServer &) = delete;

    [[nodiscard]] QString address(const QString &name) const;
    /// The heads of all requests so far.
    [[nodiscard]] std::vector<std::string> requests() const;

private:
    void serve();
    void answer(int connection);

    const QDir m_folder;
    int m_listener = -1;
    int m_port = 0;
    mutable std::mutex m_lock;
    std::vector<std::string> m_requests; // guarded by m_lock
    std::vector<int> m_stalled;          // guarded by m_lock
    std::thread m_thread;
};

}
