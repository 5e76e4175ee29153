// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QString>
#include <QStringView>

#include <array>

namespace veltro {

/// The qualities that the home screen offers.
enum class QualityTier { k4, p1080, p720, p480, audio };

/// In the order in which they are shown.
inline constexpr std::array qualityTiers{QualityTier::k4, QualityTier::p1080, QualityTier::p720,
                                         QualityTier::p480, QualityTier::audio};

[[nodiscard]] QString label(QualityTier tier);
[[nodiscard]] QString selector(QualityTier tier);

/// The tier whose selector this is, to the letter; p1080 for any other text.
[[nodiscard]] QualityTier qualityTierForSelector(QStringView selector);

}
