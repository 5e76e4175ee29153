// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace veltro {

/// Counts the links of a text as they are typed or pasted. Main thread.
class BatchLinks : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    Q_PROPERTY(int count READ count NOTIFY textChanged)
    Q_PROPERTY(QString countText READ countText NOTIFY textChanged)
public:
    using QObject::QObject;

    [[nodiscard]] QString text() const { return m_text; }
    void setText(const QString &text);
    [[nodiscard]] int count() const { return m_count; }
    [[nodiscard]] QString countText() const;

Q_SIGNALS:
    void textChanged();

private:
    QString m_text;
    int m_count = 0;
};

}
