// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/defaults_store.h"

#include "platform/user_folders.h"

#include <QSettings>

namespace veltro {

DefaultsStore::DefaultsStore()
    : DefaultsStore(configurationFolder() + QStringLiteral("/veltro.ini"))
{}

std::optional<QByteArray> DefaultsStore::data(const QString &key) const
{
    const QSettings settings(m_file, QSettings::IniFormat);
    const QVariant value = settings.value(key);
    // A text that a person has typed into the file is as good as the bytes that we write.
    const int type = value.typeId();
    if (type != QMetaType::QByteArray && type != QMetaType::QString) {
        return std::nullopt;
    }
    return value.toByteArray();
}

bool DefaultsStore::setData(const QString &key, const QByteArray &data) const
{
    QSettings settings(m_file, QSettings::IniFormat);
    settings.setValue(key, data);
    settings.sync();
    return settings.status() == QSettings::NoError;
}

}
