// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "engine/media/media_info.h"

#include <QString>

#include <vector>

namespace veltro {

// Texts in yt-dlp's format selection language. Every function here is pure; any thread.

/// A default quality that the settings offer.
struct DefaultFormatChoice {
    QString label;
    QString selector;
    bool operator==(const DefaultFormatChoice &) const = default;
};

/// The choices of the settings, in the order in which they are shown.
[[nodiscard]] const std::vector<DefaultFormatChoice> &defaultFormatChoices();

/// What to download when the user has picked this format: the format alone when it carries
/// sound or is sound; otherwise the picture with AAC sound, and fallbacks.
[[nodiscard]] QString selectorForPickedFormat(const Format &format);

/// Whether the selector asks for sound only.
[[nodiscard]] bool isAudioOnlySelector(const QString &selector);

/// Rewrites "best" and the height-capped selectors so that H.264 is taken before other codecs,
/// since it needs no re-encoding to play. Any other selector stays as it is.
[[nodiscard]] QString preferH264Selector(const QString &selector);

}
