// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "engine/media/media_info.h"

#include <QString>

#include <array>
#include <vector>

namespace veltro {

// Which formats of a page stand where in the picker. Every function here is pure.

/// The lists of the picker.
enum class FormatSection { video, audio, all };

/// In the order in which they are shown.
inline constexpr std::array formatSections{FormatSection::video, FormatSection::audio,
                                           FormatSection::all};

[[nodiscard]] QString sectionTitle(FormatSection section);

/// Whether the built-in player takes the format without re-encoding.
[[nodiscard]] bool playsInPlayer(const Format &format);

/// The number beside the section's title: whether it plays does not matter here.
[[nodiscard]] int countOf(FormatSection section, const std::vector<Format> &formats);

/// The formats that the section lists, in the page's order: those that play.
[[nodiscard]] std::vector<Format> rowsOf(FormatSection section, const std::vector<Format> &formats);

/// The last line of a row: the extension in capitals.
[[nodiscard]] QString extensionText(const Format &format);
/// What follows it: the size; empty when it is not known.
[[nodiscard]] QString sizeText(const Format &format);

/// What the picker says and offers where a section lists nothing.
struct EmptySection {
    QString reason;               ///< one line
    QString offer;                ///< the label of the button; empty when nothing is offered
    std::optional<Format> format; ///< what the button picks

    bool operator==(const EmptySection &) const = default;
};

/// REQUIRES: rowsOf() is empty for the section, and the page is no playlist.
[[nodiscard]] EmptySection emptySection(FormatSection section, const MediaInfo &info);

}
