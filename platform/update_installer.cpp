// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/update_installer.h"

#include "platform/bundle_information.h"
#include "platform/child_environment.h"
#include "platform/update_feed.h"

#include <QCoreApplication>
#include <QProcess>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace veltro {
namespace {

namespace fs = std::filesystem;

constexpr char workPrefix[] = ".veltro-update-";
constexpr int unpackMilliseconds = 10 * 60 * 1000;

QString shown(const char *text)
{
    return QCoreApplication::translate("veltro::UpdateInstaller", text);
}

/// Folders of earlier updates that did not come to their end.
void removeLeftovers(const fs::path &folder)
{
    std::error_code ignored;
    std::vector<fs::path> found;
    for (const fs::directory_entry &entry : fs::directory_iterator(folder, ignored)) {
        if (entry.path().filename().string().starts_with(workPrefix)) {
            found.push_back(entry.path());
        }
    }
    for (const fs::path &leftover : found) {
        fs::remove_all(leftover, ignored);
    }
}

/// The one folder that an archive holds.
fs::path onlyFolderIn(const fs::path &folder)
{
    fs::path only;
    for (const fs::directory_entry &entry : fs::directory_iterator(folder)) {
        if (!only.empty() || entry.is_symlink() || !entry.is_directory()) {
            throw UpdateError("The update is not made as it should be.");
        }
        only = entry.path();
    }
    return only;
}

}

UpdateInstaller::UpdateInstaller(fs::path bundleRoot) : m_root(std::move(bundleRoot)) {}

UpdateInstaller::~UpdateInstaller()
{
    if (!m_work.empty()) {
        std::error_code ignored;
        fs::remove_all(m_work, ignored);
    }
}

std::optional<QString> UpdateInstaller::refusal() const
{
    if (!BundleInformation::of(m_root).managedBy.isEmpty()) {
        return shown("This copy of Veltro came with a package. Your package manager updates it.");
    }
    struct stat root {};
    const bool isOurs = ::lstat(m_root.c_str(), &root) == 0 && S_ISDIR(root.st_mode) &&
                        root.st_uid == ::geteuid() &&
                        ::access(m_root.parent_path().c_str(), W_OK | X_OK) == 0;
    if (!isOurs) {
        return shown("This copy of Veltro belongs to the system. Update it the way it was "
                     "installed.");
    }
    return std::nullopt;
}

fs::path UpdateInstaller::workFolder()
{
    if (m_work.empty()) {
        removeLeftovers(m_root.parent_path());
        std::string pattern =
            (m_root.parent_path() / (std::string(workPrefix) + "XXXXXX")).string();
        if (!::mkdtemp(pattern.data())) {
            throw UpdateError(std::string("There is no room for the update: ") +
                              std::strerror(errno));
        }
        m_work = pattern;
    }
    return m_work;
}

void UpdateInstaller::prepare(const fs::path &archive, const QVersionNumber &version)
{
    try {
        const fs::path unpacked = workFolder() / "unpacked";
        fs::create_directory(unpacked);
        unpack(archive, unpacked);
        const fs::path bundle = onlyFolderIn(unpacked);
        const auto information = BundleInformation::of(bundle);
        const bool isWhole = QVersionNumber::fromString(information.shortVersion) == version &&
                             ::access((bundle / "veltro").c_str(), X_OK) == 0 &&
                             fs::is_directory(bundle / "Contents/Resources");
        if (!isWhole) {
            throw UpdateError("The update is not made as it should be.");
        }
        m_prepared = bundle;
    } catch (const fs::filesystem_error &error) {
        throw UpdateError(error.what());
    }
}

void UpdateInstaller::unpack(const fs::path &archive, const fs::path &target) const
{
    QProcess tar;
    tar.setProcessEnvironment(childEnvironment());
    tar.start(QStringLiteral("tar"),
              {QStringLiteral("--extract"), QStringLiteral("--no-same-owner"),
               QStringLiteral("--file"), QString::fromStdString(archive.string()),
               QStringLiteral("--directory"), QString::fromStdString(target.string())});
    if (!tar.waitForFinished(unpackMilliseconds) || tar.exitStatus() != QProcess::NormalExit ||
        tar.exitCode() != 0) {
        tar.kill();
        tar.waitForFinished();
        throw UpdateError("The update cannot be unpacked.");
    }
}

void UpdateInstaller::install()
{
    if (::renameat2(AT_FDCWD, m_prepared.c_str(), AT_FDCWD, m_root.c_str(), RENAME_EXCHANGE) == 0) {
        m_prepared.clear(); // what lies there now is the old bundle; it goes with the work folder
        return;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        throw UpdateError(std::string("The update cannot be put in place: ") +
                          std::strerror(errno));
    }
    // A file system that cannot change places: two steps, the first undone when the second fails.
    const fs::path old = m_work / "old";
    std::error_code failure;
    fs::rename(m_root, old, failure);
    if (!failure) {
        fs::rename(m_prepared, m_root, failure);
        if (failure) {
            std::error_code ignored;
            fs::rename(old, m_root, ignored);
        }
    }
    if (failure) {
        throw UpdateError("The update cannot be put in place: " + failure.message());
    }
    m_prepared.clear();
}

}
