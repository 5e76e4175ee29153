// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <filesystem>

namespace veltro {

/// The private folder that the program runs from: the executable and, below Contents/, all that
/// ships with it. Constant for the life of the process; any thread.
class Bundle {
public:
    /// The bundle of this process. Its root is the folder that holds the executable, links
    /// resolved.
    static const Bundle &main();

    explicit Bundle(std::filesystem::path root);

    /// Never a shared folder of programs: the interpreter looks for modules here first.
    [[nodiscard]] const std::filesystem::path &root() const { return m_root; }
    /// The support module, the certificates and the yt-dlp package.
    [[nodiscard]] std::filesystem::path resources() const;
    /// A relocatable interpreter, where one is staged; the folder may be absent.
    [[nodiscard]] std::filesystem::path frameworkHome() const;
    /// Libraries that are loaded on first use.
    [[nodiscard]] std::filesystem::path plugIns() const;

private:
    const std::filesystem::path m_root;
};

}
