// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/bundle.h"

#include <utility>

namespace veltro {

const Bundle &Bundle::main()
{
    static const Bundle bundle(std::filesystem::read_symlink("/proc/self/exe").parent_path());
    return bundle;
}

Bundle::Bundle(std::filesystem::path root) : m_root(std::move(root)) {}

std::filesystem::path Bundle::resources() const
{
    return m_root / "Contents/Resources";
}

std::filesystem::path Bundle::frameworkHome() const
{
    return m_root / "Contents/Frameworks/Python.framework/Versions/3.12";
}

std::filesystem::path Bundle::plugIns() const
{
    return m_root / "Contents/PlugIns";
}

}
