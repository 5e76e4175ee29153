// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/written_file.h"

#include <sys/stat.h>
#include <unistd.h>

namespace veltro::ffmpeg {

WrittenFile::~WrittenFile()
{
    if (!m_isOurs || m_isKept) {
        return;
    }
    struct stat now = {};
    if (lstat(m_path.c_str(), &now) == 0 && S_ISREG(now.st_mode) && now.st_dev == m_device &&
        now.st_ino == m_inode) {
        unlink(m_path.c_str());
    }
}

bool WrittenFile::exists() const
{
    struct stat now = {};
    return stat(m_path.c_str(), &now) == 0;
}

void WrittenFile::opened()
{
    struct stat now = {};
    if (lstat(m_path.c_str(), &now) == 0 && S_ISREG(now.st_mode)) {
        m_isOurs = true;
        m_device = now.st_dev;
        m_inode = now.st_ino;
    }
}

void WrittenFile::comesFrom(const WrittenFile &other)
{
    m_isOurs = other.m_isOurs;
    m_device = other.m_device;
    m_inode = other.m_inode;
}

}
