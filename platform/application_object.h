// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QObject>
#include <QStringList>
#include <QVariantMap>

namespace veltro {

class SingleInstance;

/// The program on the session bus, as the desktop and later starts call it. Main thread only.
class ApplicationObject : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")
public:
    enum class Outcome { first, handedOver, noBus };

    /// A child of the instance, which takes what arrives.
    explicit ApplicationObject(SingleInstance &instance);

    /// Takes the program's name on the bus, or hands the links to the process that has it.
    [[nodiscard]] Outcome start(const QStringList &links, const QString &activationToken);

public Q_SLOTS:
    // Named by the interface.
    void Activate(const QVariantMap &platformData);
    void Open(const QStringList &links, const QVariantMap &platformData);
    void ActivateAction(const QString &name, const QVariantList &parameter,
                        const QVariantMap &platformData);

private:
    SingleInstance &m_instance;
};

}
