// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QString>
#include <QVersionNumber>

#include <filesystem>
#include <optional>

namespace veltro {

/// Puts a new bundle in the place of the one that runs. The new one is made whole beside the old
/// one first; then both change places in one step, so that there is a whole bundle at every moment.
/// One thread at a time; unpacking takes a while.
class UpdateInstaller {
public:
    explicit UpdateInstaller(std::filesystem::path bundleRoot);
    /// Removes what was unpacked and not put in place.
    ~UpdateInstaller();
    UpdateInstaller(const UpdateInstaller &) = delete;
    UpdateInstaller &operator=(const UpdateInstaller &) = delete;

    /// Why this bundle is not ours to replace, fit to show; nothing when it is. A bundle that a
    /// package brought, or that the user cannot write, is left to what brought it.
    [[nodiscard]] std::optional<QString> refusal() const;

    /// A folder beside the bundle for the archive and the new bundle; made on first use.
    /// @throws UpdateError
    [[nodiscard]] std::filesystem::path workFolder();
    /// Unpacks the archive and looks whether it holds a bundle of that version.
    /// @throws UpdateError
    void prepare(const std::filesystem::path &archive, const QVersionNumber &version);
    [[nodiscard]] bool isPrepared() const { return !m_prepared.empty(); }
    /// Puts what was prepared in place. @throws UpdateError, and the old bundle stays
    void install();

private:
    void unpack(const std::filesystem::path &archive, const std::filesystem::path &target) const;

    const std::filesystem::path m_root;
    std::filesystem::path m_work;
    std::filesystem::path m_prepared; // the new bundle, in the work folder
};

}
