// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/workspace.h"

#include "platform/child_environment.h"
#include "platform/log.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLibrary>
#include <QMimeDatabase>
#include <QProcess>
#include <QStandardPaths>
#include <QThreadPool>
#include <qpa/qplatformintegration.h>

#include <algorithm>
#include <private/qguiapplication_p.h>
#include <utility>

namespace veltro {
namespace {

bool startOnItsOwn(const QString &program, const QStringList &arguments)
{
    const QString found = QStandardPaths::findExecutable(program);
    if (found.isEmpty()) {
        return false;
    }
    QProcess process;
    process.setProgram(found);
    process.setArguments(arguments);
    process.setProcessEnvironment(childEnvironment());
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    return process.startDetached();
}

QString encoded(const QUrl &url)
{
    return QString::fromLatin1(url.toEncoded(QUrl::FullyEncoded));
}

/// Kinds whose default program runs or installs them. Scripts and shared libraries descend from
/// the first.
bool isRunnable(const QMimeType &type)
{
    static const char *const kinds[] = {
        "application/x-executable",
        "application/x-sharedlib",
        "application/x-desktop",
        "application/x-shellscript",
        "application/javascript",
        "text/javascript",
        "application/x-php",
        "application/x-java-archive",
        "application/x-java-jnlp-file",
        "application/vnd.appimage",
        "application/x-iso9660-appimage",
        "application/vnd.microsoft.portable-executable",
        "application/x-ms-dos-executable",
        "application/x-msdownload",
        "application/x-msi",
        "application/x-bat",
        "application/x-ms-shortcut",
        "application/x-mswinurl",
        "application/vnd.flatpak",
        "application/vnd.flatpak.ref",
        "application/vnd.snap",
        "application/vnd.debian.binary-package",
        "application/x-rpm",
    };
    return std::any_of(std::begin(kinds), std::end(kinds),
                       [&](const char *kind) { return type.inherits(QLatin1String(kind)); });
}

bool isMedia(const QMimeType &type)
{
    const QString name = type.name();
    return name.startsWith(QLatin1String("video/")) || name.startsWith(QLatin1String("audio/")) ||
           name.startsWith(QLatin1String("image/")) || type.inherits(QStringLiteral("video/ogg")) ||
           type.inherits(QStringLiteral("application/ogg"));
}

/// The sound theme's alert, through a library that a desktop has for it.
bool playAlertOfSoundTheme()
{
    struct Context;
    using Create = int (*)(Context **);
    using Play = int (*)(Context *, unsigned int, ...);
    static QLibrary library(QStringLiteral("canberra"), 0);
    static const auto create = reinterpret_cast<Create>(library.resolve("ca_context_create"));
    static const auto play = reinterpret_cast<Play>(library.resolve("ca_context_play"));
    static Context *const context = [] {
        Context *made = nullptr;
        return create && play && create(&made) == 0 ? made : nullptr;
    }();
    const char *const end = nullptr;
    return context && play(context, 0, "event.id", "dialog-error", end) == 0;
}

void ringBell()
{
    if (QPlatformIntegration *const platform = QGuiApplicationPrivate::platformIntegration()) {
        platform->beep();
    }
}

}

bool isSafeToOpen(const QString &file)
{
    // What a link is called counts as well as what it leads to: other programs go by either.
    const QString target = QFileInfo(file).canonicalFilePath();
    const QFileInfo information(target);
    if (!information.isFile()) {
        return false;
    }
    const QMimeDatabase types;
    const QList<QMimeType> called = types.mimeTypesForFileName(QFileInfo(file).fileName());
    QList<QMimeType> kinds = types.mimeTypesForFileName(information.fileName());
    kinds += types.mimeTypeForFile(information, QMimeDatabase::MatchContent);
    if (std::any_of(called.cbegin(), called.cend(), isRunnable) ||
        std::any_of(kinds.cbegin(), kinds.cend(), isRunnable)) {
        return false;
    }
    // On some file systems every file may be run, so that mark tells nothing about media.
    return !information.isExecutable() || std::any_of(kinds.cbegin(), kinds.cend(), isMedia);
}

DesktopWorkspace::DesktopWorkspace() : DesktopWorkspace(startOnItsOwn) {}

DesktopWorkspace::DesktopWorkspace(Launcher launcher) : m_launch(std::move(launcher)) {}

bool DesktopWorkspace::open(const QUrl &file)
{
    if (!file.isLocalFile() || !isSafeToOpen(file.toLocalFile())) {
        logLine(LogTag::engine,
                "not opened, as it is no file that only shows: " + file.toString().toStdString());
        return false;
    }
    return hand(file);
}

void DesktopWorkspace::reveal(const QList<QUrl> &files)
{
    QStringList addresses;
    for (const QUrl &file : files) {
        if (file.isLocalFile() && QFileInfo::exists(file.toLocalFile())) {
            addresses += encoded(file);
        }
    }
    const QUrl first = files.value(0);
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (addresses.isEmpty() || !bus.isConnected()) {
        openFolderOf(first);
        return;
    }
    QDBusMessage request = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"),
        QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    request << addresses << QString();
    auto *const answer = new QDBusPendingCallWatcher(bus.asyncCall(request));
    // The answer may come when this workspace is gone.
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, answer,
                     [answer, launch = m_launch, first] {
                         answer->deleteLater();
                         if (QDBusPendingReply<>(*answer).isError()) {
                             DesktopWorkspace(launch).openFolderOf(first);
                         }
                     });
}

bool DesktopWorkspace::openWebPage(const QUrl &page)
{
    const QString scheme = page.scheme();
    const bool isPage = page.isValid() && !page.host().isEmpty() &&
                        (scheme == QLatin1String("http") || scheme == QLatin1String("https"));
    return isPage && hand(page);
}

void DesktopWorkspace::beep()
{
    // The first sound connects to the sound service, which may take a while.
    QThreadPool::globalInstance()->start([] {
        if (!playAlertOfSoundTheme() && qApp) {
            QMetaObject::invokeMethod(qApp, ringBell, Qt::QueuedConnection);
        }
    });
}

bool DesktopWorkspace::hand(const QUrl &url) const
{
    const QString address = encoded(url);
    if (m_launch(QStringLiteral("xdg-open"), {address}) ||
        m_launch(QStringLiteral("gio"), {QStringLiteral("open"), address})) {
        return true;
    }
    logLine(LogTag::engine, "no program here opens files and addresses (xdg-open, gio)");
    return false;
}

void DesktopWorkspace::openFolderOf(const QUrl &file) const
{
    const QFileInfo folder(QFileInfo(file.toLocalFile()).absolutePath());
    if (file.isLocalFile() && folder.isDir()) {
        (void)hand(QUrl::fromLocalFile(folder.absoluteFilePath()));
    }
}

}
