// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

namespace veltro {

/// The user's defaults: documents by key, in one ini file of the configuration folder. A write
/// replaces the file as a whole or leaves it as it was; keys that are not ours stay.
///
/// Any thread, and above all the main thread, may make stores and call them: nothing waits for the
/// disk to write, nor for another process. What is set is seen at once by all stores of the process
/// over that file, and written by a thread of its own, the last of several quick ones alone. What
/// cannot be written is logged and stays in force, and is tried again with what is set next and at
/// the end.
///
/// The end of the last store over a file waits until nothing is left to be written, or it has
/// failed: ten seconds at most for another process that holds the file.
class DefaultsStore {
public:
    /// Over the program's own file.
    DefaultsStore();
    explicit DefaultsStore(const QString &file);

    /// Nothing when there is no such key, or no file that can be read.
    [[nodiscard]] std::optional<QByteArray> data(const QString &key) const;

    void setData(const QString &key, const QByteArray &data) const;

private:
    class File;

    std::shared_ptr<File> m_file;
};

}
