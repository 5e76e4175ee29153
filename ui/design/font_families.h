// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace veltro {

/// The families that texts are set in: Inter where it is installed, the system's font otherwise.
/// Main thread.
class FontFamilies : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString text MEMBER m_text CONSTANT)
    Q_PROPERTY(QString display MEMBER m_display CONSTANT)
public:
    explicit FontFamilies(QObject *parent = nullptr);

private:
    // Constant after construction.
    QString m_text;
    QString m_display; ///< for the largest texts
};

}
