// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/option_table.h"

#include <algorithm>
#include <array>

namespace veltro::ffmpeg {
namespace {

constexpr auto bare = OptionShape::flag;
constexpr auto valued = OptionShape::value;

constexpr OptionRule accepted(std::string_view name, OptionScope scope, OptionShape shape)
{
    return {name, name, "", scope, shape};
}
constexpr OptionRule perStream(std::string_view name, OptionScope scope, OptionShape shape = valued)
{
    return {name, name, "", scope, shape, OptionUse::accept, true};
}
constexpr OptionRule alias(std::string_view name, std::string_view canonical,
                           std::string_view specifier, OptionScope scope)
{
    return {name, canonical, specifier, scope, valued};
}
constexpr OptionRule ignored(std::string_view name, OptionShape shape,
                             OptionScope scope = forCommand)
{
    return {name, name, "", scope, shape, OptionUse::ignore, scope != forCommand};
}
constexpr OptionRule refused(std::string_view name, OptionShape shape,
                             OptionScope scope = forCommand)
{
    return {name, name, "", scope, shape, OptionUse::refuse, scope != forCommand};
}
constexpr OptionRule forLibrary(std::string_view name, std::string_view canonical,
                                std::string_view specifier)
{
    return {name, canonical, specifier, forOutput, valued, OptionUse::library, true};
}
constexpr OptionRule information(std::string_view name)
{
    return {name, name, "", forCommand, bare, OptionUse::information};
}

constexpr std::array table{
    // the run
    accepted("y", forCommand, bare),
    accepted("n", forCommand, bare),
    accepted("loglevel", forCommand, valued),
    alias("v", "loglevel", "", forCommand),
    accepted("hide_banner", forCommand, bare),
    accepted("ignore_unknown", forCommand, bare),
    accepted("copy_unknown", forCommand, bare),
    accepted("xerror", forCommand, bare),
    accepted("max_error_rate", forCommand, valued),
    accepted("copyts", forCommand, bare),
    accepted("start_at_zero", forCommand, bare),
    accepted("vsync", forCommand, valued),
    ignored("stdin", bare),
    ignored("stats", bare),
    ignored("stats_period", valued),
    ignored("report", bare),
    ignored("benchmark", bare),
    ignored("filter_threads", valued),
    ignored("cpuflags", valued),
    ignored("max_alloc", valued),
    information("version"),
    information("bsfs"),

    // a file
    accepted("f", forFile, valued),
    accepted("ss", forFile, valued),
    accepted("t", forFile, valued),
    accepted("to", forFile, valued),
    accepted("vn", forFile, bare),
    accepted("an", forFile, bare),
    accepted("sn", forFile, bare),
    accepted("dn", forFile, bare),
    accepted("bitexact", forFile, bare),
    accepted("itsoffset", forInput, valued),
    accepted("sseof", forInput, valued),
    accepted("seek_timestamp", forInput, valued),
    accepted("stream_loop", forInput, valued),
    accepted("accurate_seek", forInput, bare),
    accepted("re", forInput, bare),
    accepted("map", forOutput, valued),
    accepted("map_chapters", forOutput, valued),
    accepted("fs", forOutput, valued),
    accepted("shortest", forOutput, bare),
    accepted("attach", forOutput, valued),
    accepted("muxdelay", forOutput, valued),
    accepted("muxpreload", forOutput, valued),
    ignored("thread_queue_size", valued, forInput),

    // a stream of a file
    perStream("c", forFile),
    perStream("tag", forFile),
    perStream("r", forFile),
    perStream("s", forFile),
    perStream("pix_fmt", forFile),
    perStream("ar", forFile),
    perStream("ac", forFile),
    perStream("ch_layout", forFile),
    perStream("itsscale", forInput),
    perStream("discard", forInput),
    perStream("autorotate", forInput, valued),
    perStream("bsf", forOutput),
    perStream("metadata", forOutput),
    perStream("map_metadata", forOutput),
    perStream("disposition", forOutput),
    perStream("aspect", forOutput),
    perStream("filter", forOutput),
    perStream("frames", forOutput),
    perStream("q", forOutput),
    perStream("sample_fmt", forOutput),
    perStream("force_key_frames", forOutput),
    perStream("fps_mode", forOutput),
    perStream("enc_time_base", forOutput),
    perStream("copyinkf", forOutput, bare),
    perStream("copypriorss", forOutput),
    perStream("max_muxing_queue_size", forOutput),
    perStream("muxing_queue_data_threshold", forOutput),
    // Belongs to an encoder that only another platform has: whether it may work in software. We
    // choose between hardware and software by ourselves, so it is read and has no effect.
    ignored("allow_sw", valued, forOutput),

    // other names
    OptionRule{"codec", "c", "", forFile, valued, OptionUse::accept, true},
    alias("vcodec", "c", "v", forFile),
    alias("acodec", "c", "a", forFile),
    alias("scodec", "c", "s", forFile),
    alias("dcodec", "c", "d", forFile),
    alias("vf", "filter", "v", forOutput),
    alias("af", "filter", "a", forOutput),
    alias("vbsf", "bsf", "v", forOutput),
    alias("absf", "bsf", "a", forOutput),
    alias("vtag", "tag", "v", forFile),
    alias("atag", "tag", "a", forFile),
    alias("stag", "tag", "s", forOutput),
    alias("vframes", "frames", "v", forOutput),
    alias("aframes", "frames", "a", forOutput),
    alias("dframes", "frames", "d", forOutput),
    alias("aq", "q", "a", forOutput),
    OptionRule{"qscale", "q", "v", forOutput, valued, OptionUse::accept, true},
    OptionRule{"channel_layout", "ch_layout", "", forFile, valued, OptionUse::accept, true},
    forLibrary("b", "b", "v"),
    forLibrary("ab", "b", "a"),
    forLibrary("profile", "profile", "v"),

    // known to the tool, not supported here
    refused("filter_complex", valued),
    refused("lavfi", valued),
    refused("filter_complex_script", valued),
    refused("init_hw_device", valued),
    refused("filter_hw_device", valued),
    refused("vaapi_device", valued),
    refused("qsv_device", valued),
    refused("progress", valued),
    refused("sdp_file", valued),
    refused("timelimit", valued),
    refused("abort_on", valued),
    refused("hwaccel", valued, forInput),
    refused("hwaccel_device", valued, forInput),
    refused("hwaccel_output_format", valued, forInput),
    refused("readrate", valued, forInput),
    refused("isync", valued, forInput),
    refused("dump_attachment", valued, forInput),
    refused("pass", valued, forOutput),
    refused("passlogfile", valued, forOutput),
    refused("filter_script", valued, forOutput),
    refused("target", valued, forOutput),
    refused("pre", valued, forOutput),
    refused("program", valued, forOutput),
    refused("map_channel", valued, forOutput),
    refused("streamid", valued, forOutput),
    refused("vstats_file", valued, forOutput),
    refused("formats", bare),
    refused("muxers", bare),
    refused("demuxers", bare),
    refused("devices", bare),
    refused("codecs", bare),
    refused("decoders", bare),
    refused("encoders", bare),
    refused("protocols", bare),
    refused("filters", bare),
    refused("pix_fmts", bare),
    refused("layouts", bare),
    refused("sample_fmts", bare),
    refused("buildconf", bare),
    refused("L", bare),
    refused("h", bare),
    refused("help", bare),
};

}

const OptionRule *findOptionRule(std::string_view written)
{
    const std::string_view name = written.substr(0, written.find(':'));
    const auto *found = std::find_if(table.begin(), table.end(),
                                     [name](const OptionRule &rule) { return rule.name == name; });
    return found == table.end() ? nullptr : found;
}

}
