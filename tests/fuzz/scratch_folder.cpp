// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/fuzz/scratch_folder.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <system_error>

namespace veltro::fuzz {
namespace fs = std::filesystem;

Bytes readBytes(const fs::path &file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

void writeBytes(const fs::path &file, const Bytes &content)
{
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream.write(reinterpret_cast<const char *>(content.data()),
                 static_cast<std::streamsize>(content.size()));
}

ScratchFolder::ScratchFolder()
{
    const fs::path memory = "/dev/shm";
    std::error_code ignored;
    const fs::path parent = fs::is_directory(memory, ignored) ? memory : fs::temp_directory_path();
    std::string name = (parent / "veltro-fuzz-XXXXXX").string();
    if (!mkdtemp(name.data())) {
        throw std::system_error(errno, std::generic_category(), name);
    }
    m_path = name;
}

ScratchFolder::~ScratchFolder()
{
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}

std::map<std::string, std::uintmax_t> ScratchFolder::files() const
{
    std::map<std::string, std::uintmax_t> found;
    for (const fs::directory_entry &entry : fs::directory_iterator(m_path)) {
        std::error_code ignored;
        found[entry.path().filename().string()] = entry.file_size(ignored);
    }
    return found;
}

void ScratchFolder::clear() const
{
    for (const fs::directory_entry &entry : fs::directory_iterator(m_path)) {
        fs::remove_all(entry.path());
    }
}

}
