// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/media_tools.h"
#include "tests/platform/ffmpeg/stock_tool.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <string>
#include <thread>
#include <vector>

namespace veltro::ffmpeg {

/// Arguments as the program passes them.
[[nodiscard]] std::vector<std::string> argumentsOf(const QStringList &arguments);
/// Splits a command by blanks; none of the words used here holds one.
[[nodiscard]] QStringList wordsOf(const QString &command);
[[nodiscard]] QStringList wordsOf(const char *command);
/// The command by which the program makes a saved file playable.
[[nodiscard]] QStringList playbackCommand(const QString &input, const QString &output);

/// Runs a command line in process, in a session of its own.
[[nodiscard]] ToolAnswer runInProcess(const QStringList &arguments);

/// A command line that runs on a thread of its own until it has ended or is cancelled.
class BackgroundRun {
public:
    explicit BackgroundRun(const QStringList &arguments);
    ~BackgroundRun() { static_cast<void>(cancel()); }
    BackgroundRun(const BackgroundRun &) = delete;
    BackgroundRun &operator=(const BackgroundRun &) = delete;

    /// Waits, with the event loop alive, until something has been written.
    [[nodiscard]] bool hasBegun() const;
    [[nodiscard]] double positionSeconds() const { return m_session->progress().positionSeconds; }
    [[nodiscard]] std::string log() const { return m_session->log(); }
    /// Wait for the end. @returns the code of the run.
    [[nodiscard]] int finish();
    [[nodiscard]] int cancel();

private:
    const std::unique_ptr<Session> m_session;
    int m_code = -1; // the thread's until that has been joined
    std::thread m_thread;
};

/// A process whose locale writes numbers with a comma, for as long as it lives.
class CommaLocale {
public:
    CommaLocale();
    ~CommaLocale();
    CommaLocale(const CommaLocale &) = delete;
    CommaLocale &operator=(const CommaLocale &) = delete;

    /// Whether the calling thread reads numbers so.
    [[nodiscard]] static bool isInForce();

private:
    const QTemporaryDir m_folder; // with a locale of our own making: a machine may have none
};

/// What this process holds in memory.
[[nodiscard]] qint64 residentBytes();

[[nodiscard]] QByteArray lastLineOf(const QByteArray &log);

/// What ffprobe says of a file's streams: the named entries, a line for each stream.
[[nodiscard]] QStringList streamFacts(const QString &path, const QString &entries);
/// The packets of one stream: their times and a digest of their data, a line for each.
[[nodiscard]] QStringList packetsOf(const QString &path, const QString &stream);

}
