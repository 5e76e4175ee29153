// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <cstdint>
#include <string_view>

namespace veltro::ffmpeg {

/// Where on the command line an option may stand, as bits.
enum OptionScope : std::uint8_t {
    forCommand = 1, ///< anywhere; it speaks of the whole run
    forInput = 2,   ///< before the input that it speaks of
    forOutput = 4,  ///< before the output that it speaks of
    forFile = forInput | forOutput,
};

enum class OptionShape : std::uint8_t {
    flag,  ///< no value; "-noNAME" turns it off
    value, ///< the next argument is its value
};

enum class OptionUse : std::uint8_t {
    accept,
    ignore,      ///< understood, and without a meaning here
    refuse,      ///< known to the tool and not supported by this program
    library,     ///< a name of the tool for an option of the libraries
    information, ///< prints a text and ends the command
};

/// One option that the tool has, or that we have in its place.
struct OptionRule {
    std::string_view name;
    std::string_view canonical; ///< the name under which it is kept: "vcodec" is kept as "c"
    std::string_view specifier; ///< the stream specifier that the name implies, "v" of "vcodec"
    OptionScope scope;
    OptionShape shape;
    OptionUse use = OptionUse::accept;
    bool takesSpecifier = false; ///< whether "NAME:SPECIFIER" is allowed
};

/// The rule for an option as it is written, without the dash; a specifier after the name is
/// passed over. @returns null for a name that the table lacks.
[[nodiscard]] const OptionRule *findOptionRule(std::string_view written);

}
