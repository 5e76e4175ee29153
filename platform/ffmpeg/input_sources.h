// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/libav.h"

#include <cstdint>
#include <set>
#include <string>
#include <sys/types.h>
#include <utility>

namespace veltro::ffmpeg {

/// The local files that an input is read from: the one of its name, the pictures of a series, the
/// parts that a script or a chain names. Known by what they are, under whatever name. Looks at the
/// disk when it is made; any thread may ask then.
class InputSources {
public:
    /// @param input an open demuxer; of another's options than its own nothing is asked.
    explicit InputSources(const AVFormatContext &input);

    [[nodiscard]] bool has(const std::string &path) const;

private:
    bool add(const std::string &path);
    void addSeries(const AVFormatContext &input, const std::string &pattern);
    void addNumbered(const std::string &pattern, std::int64_t first, std::int64_t attempts);
    void addMatching(const std::string &pattern);
    void addParts(const std::string &script);
    void addChain(const std::string &parts);

    std::set<std::pair<dev_t, ino_t>> m_files;
};

}
