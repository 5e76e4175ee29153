// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/player_options.h"

#include <algorithm>
#include <array>
#include <string>

namespace veltro::player {
namespace {

struct Option {
    const char *name;
    const char *value;
};

// A media file comes from a page that nobody vouches for. These keep it from having anything else
// read, fetched or run.
constexpr std::array guards{
    Option{"config", "no"},
    Option{"ytdl", "no"},
    Option{"load-scripts", "no"},
    Option{"access-references", "no"},
    Option{"autoload-files", "no"},
    Option{"sub-auto", "no"},
    Option{"audio-file-auto", "no"},
    Option{"cover-art-auto", "no"},
    Option{"load-unsafe-playlists", "no"},
    Option{"ordered-chapters", "no"},
    Option{"embeddedfonts", "no"},
    // The player's own readers for playlists, cue sheets, archives and edit lists stay away.
    Option{"demuxer", "lavf"},
    Option{"vo", "libmpv"},
};

// What does not matter for safety; a library that has dropped one of them plays all the same.
constexpr std::array comforts{
    Option{"terminal", "no"},
    Option{"osc", "no"},
    Option{"osd-level", "0"},
    Option{"load-stats-overlay", "no"},
    Option{"load-auto-profiles", "no"},
    Option{"load-osd-console", "no"},
    Option{"input-default-bindings", "no"},
    Option{"resume-playback", "no"},
    Option{"idle", "yes"},
    Option{"keep-open", "yes"},
    Option{"ao", "pulse,pipewire,alsa,null"},
    Option{"audio-fallback-to-null", "yes"},
    Option{"audio-client-name", "Veltro"},
    Option{"volume-max", "100"},
    Option{"hwdec", "auto-safe"},
    // Pictures above 8192 by 8192 are not decoded.
    Option{"vd-lavc-o", "max_pixels=67108864"},
    // A picture is handed over when it is due, not ahead of it.
    Option{"video-timing-offset", "0"},
    // The file is local: what is read ahead only costs memory.
    Option{"cache", "no"},
    Option{"demuxer-max-bytes", "64MiB"},
    Option{"demuxer-max-back-bytes", "16MiB"},
};

}

bool setOptions(const MpvLibrary &library, mpv_handle *handle, const std::string &demuxers)
{
    const auto set = [&](const Option &option) {
        return library.setOptionString(handle, option.name, option.value) >= 0;
    };
    std::for_each(comforts.begin(), comforts.end(), set);
    // The list has commas, which would end the value; a value may be preceded by its length.
    const std::string readers =
        "format_whitelist=%" + std::to_string(demuxers.size()) + "%" + demuxers;
    return std::all_of(guards.begin(), guards.end(), set) &&
           set({"demuxer-lavf-o", readers.c_str()});
}

}
