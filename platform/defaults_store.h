// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QByteArray>
#include <QString>

#include <optional>

namespace veltro {

/// The user's defaults: documents by key, in one ini file of the configuration folder. A write
/// replaces the file as a whole or leaves it as it was; keys that are not ours stay. Any thread.
class DefaultsStore {
public:
    /// Over the program's own file.
    DefaultsStore();
    explicit DefaultsStore(QString file) : m_file(std::move(file)) {}

    /// Nothing when there is no such key, or no file that can be read.
    [[nodiscard]] std::optional<QByteArray> data(const QString &key) const;

    /// Whether the document is on the disk now.
    bool setData(const QString &key, const QByteArray &data) const;

private:
    const QString m_file;
};

}
