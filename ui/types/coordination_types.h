// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "coordination/coordinator.h"
#include "platform/updater.h"

#include <QtQml/qqml.h>

// The types of the lower rooms, which know nothing of QML, as QML names them.

namespace veltro {

struct MacAppStoreType {
    Q_GADGET
    QML_FOREIGN(veltro::MacAppStore)
    QML_NAMED_ELEMENT(MacAppStore)
    QML_UNCREATABLE("The program makes one.")
};

/// The tabs by names that QML can say: its enumerators begin with a capital.
class TabType : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(Tab)
    QML_UNCREATABLE("Names only.")
public:
    enum Value {
        Home = int(MacAppStore::MacTab::home),
        Downloads = int(MacAppStore::MacTab::downloads),
        Library = int(MacAppStore::MacTab::library),
        Settings = int(MacAppStore::MacTab::settings),
    };
    Q_ENUM(Value)
};

struct ActiveDownloadsType {
    Q_GADGET
    QML_FOREIGN(veltro::ActiveDownloads)
    QML_NAMED_ELEMENT(ActiveDownloads)
    QML_UNCREATABLE("The coordinator owns it.")
};

struct DownloadProgressStateType {
    Q_GADGET
    QML_FOREIGN(veltro::DownloadProgressState)
    QML_NAMED_ELEMENT(DownloadProgressState)
    QML_UNCREATABLE("The coordinator makes them.")
};

struct NetworkMonitorType {
    Q_GADGET
    QML_FOREIGN(veltro::NetworkMonitor)
    QML_NAMED_ELEMENT(NetworkMonitor)
    QML_UNCREATABLE("The coordinator owns it.")
};

struct UpdateManagerType {
    Q_GADGET
    QML_FOREIGN(veltro::UpdateManager)
    QML_NAMED_ELEMENT(UpdateManager)
    QML_UNCREATABLE("The program makes one.")
};

/// Where an update stands, by names that QML can say.
class UpdateStateType : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(UpdateState)
    QML_UNCREATABLE("Names only.")
public:
    enum Value {
        Available = int(UpdateManager::State::available),
        Downloading = int(UpdateManager::State::downloading),
        Ready = int(UpdateManager::State::ready),
    };
    Q_ENUM(Value)
};

struct PreferencesType {
    Q_GADGET
    QML_FOREIGN(veltro::Preferences)
    QML_VALUE_TYPE(preferences)
};

struct CompletedToastType {
    Q_GADGET
    QML_FOREIGN(veltro::CompletedToast)
    QML_VALUE_TYPE(completedToast)
};

}
