// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/platform/ffmpeg/file_server.h"

#include "tests/platform/ffmpeg/runner_support.h"

#include <arpa/inet.h>
#include <array>
#include <cstring>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace veltro::ffmpeg {
namespace {

void sendAll(int connection, const QByteArray &bytes)
{
    for (qsizetype sent = 0; sent < bytes.size();) {
        const ssize_t count = send(connection, bytes.constData() + sent,
                                   static_cast<std::size_t>(bytes.size() - sent), MSG_NOSIGNAL);
        if (count <= 0) {
            return;
        }
        sent += count;
    }
}

}

FileServer::FileServer(const QDir &folder) : m_folder(folder)
{
    m_listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto *generic = reinterpret_cast<sockaddr *>(&address);
    if (m_listener >= 0 && bind(m_listener, generic, size) == 0 && listen(m_listener, 16) == 0 &&
        getsockname(m_listener, generic, &size) == 0) {
        m_port = ntohs(address.sin_port);
        m_thread = std::thread([this] { serve(); });
    }
}

FileServer::~FileServer()
{
    shutdown(m_listener, SHUT_RDWR); // accept() comes back
    if (m_thread.joinable()) {
        m_thread.join();
    }
    close(m_listener);
    for (const int connection : m_stalled) {
        close(connection);
    }
}

QString FileServer::address(const QString &name) const
{
    return QStringLiteral("http://127.0.0.1:%1/%2").arg(m_port).arg(name);
}

std::vector<std::string> FileServer::requests() const
{
    const std::lock_guard guard(m_lock);
    return m_requests;
}

void FileServer::serve()
{
    for (;;) {
        const int connection = accept(m_listener, nullptr, nullptr);
        if (connection < 0) {
            return;
        }
        answer(connection);
    }
}

void FileServer::answer(int connection)
{
    std::string head;
    std::array<char, 2048> part{};
    while (head.find("\r\n\r\n") == std::string::npos) {
        const ssize_t count = recv(connection, part.data(), part.size(), 0);
        if (count <= 0) {
            break;
        }
        head.append(part.data(), static_cast<std::size_t>(count));
    }
    const QString name = QString::fromStdString(head).section(u' ', 1, 1).mid(1);
    const QByteArray content = contentOf(m_folder.filePath(name));
    const bool stalls = name == QLatin1String("stall");
    {
        const std::lock_guard guard(m_lock);
        m_requests.push_back(head);
        if (stalls) {
            m_stalled.push_back(connection);
        }
    }
    if (stalls) {
        sendAll(connection, "HTTP/1.1 200 OK\r\nContent-Length: 1000000\r\n\r\n");
        return;
    }
    sendAll(connection, content.isNull()
                            ? QByteArray("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n"
                                         "Connection: close\r\n\r\n")
                            : "HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: " +
                                  QByteArray::number(content.size()) + "\r\n\r\n" + content);
    close(connection);
}

}
