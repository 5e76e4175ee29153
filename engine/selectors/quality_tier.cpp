// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/selectors/quality_tier.h"

#include <algorithm>

namespace veltro {

QString label(QualityTier tier)
{
    switch (tier) {
    case QualityTier::k4:
        return QStringLiteral("4K");
    case QualityTier::p1080:
        return QStringLiteral("1080p");
    case QualityTier::p720:
        return QStringLiteral("720p");
    case QualityTier::p480:
        return QStringLiteral("480p");
    case QualityTier::audio:
        return QStringLiteral("Audio");
    }
    return {};
}

QString selector(QualityTier tier)
{
    switch (tier) {
    case QualityTier::k4:
        return QStringLiteral("bestvideo[height<=2160]+bestaudio/best[height<=2160]");
    case QualityTier::p1080:
        return QStringLiteral("bestvideo[height<=1080]+bestaudio/best[height<=1080]");
    case QualityTier::p720:
        return QStringLiteral("bestvideo[height<=720]+bestaudio/best[height<=720]");
    case QualityTier::p480:
        return QStringLiteral("bestvideo[height<=480]+bestaudio/best[height<=480]");
    case QualityTier::audio:
        return QStringLiteral("bestaudio[ext=m4a]/bestaudio");
    }
    return {};
}

QualityTier qualityTierForSelector(QStringView text)
{
    const auto *const tier =
        std::find_if(qualityTiers.begin(), qualityTiers.end(),
                     [text](QualityTier candidate) { return selector(candidate) == text; });
    return tier == qualityTiers.end() ? QualityTier::p1080 : *tier;
}

}
