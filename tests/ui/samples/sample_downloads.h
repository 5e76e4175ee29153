// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "coordination/active_downloads.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace veltro {

/// A queue of `size` downloads that go through every state and every kind of progress in turn.
class SampleDownloads : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int size READ size WRITE setSize NOTIFY sizeChanged)
    Q_PROPERTY(veltro::ActiveDownloads *downloads READ downloads CONSTANT)
public:
    using QObject::QObject;

    [[nodiscard]] int size() const { return m_downloads.count(); }
    /// Only grows.
    void setSize(int size);
    [[nodiscard]] ActiveDownloads *downloads() { return &m_downloads; }

    Q_INVOKABLE veltro::DownloadProgressState *at(int row) const
    {
        return m_downloads.record(row).get();
    }

Q_SIGNALS:
    void sizeChanged();

private:
    ActiveDownloads m_downloads;
};

}
