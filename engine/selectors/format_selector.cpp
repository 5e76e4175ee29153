// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/selectors/format_selector.h"

#include "engine/selectors/quality_tier.h"

namespace veltro {

const std::vector<DefaultFormatChoice> &defaultFormatChoices()
{
    static const std::vector<DefaultFormatChoice> choices{
        {QStringLiteral("Best"), QStringLiteral("best")},
        {label(QualityTier::p1080), selector(QualityTier::p1080)},
        {label(QualityTier::p720), selector(QualityTier::p720)},
        {label(QualityTier::p480), selector(QualityTier::p480)},
        {QStringLiteral("Audio only"), selector(QualityTier::audio)},
    };
    return choices;
}

QString selectorForPickedFormat(const Format &format)
{
    if (!format.isVideoOnly) {
        return format.id;
    }
    return format.id + QStringLiteral("+bestaudio[acodec^=mp4a]/") + format.id +
           QStringLiteral("+bestaudio/") + format.id + QStringLiteral("/best[ext=mp4]/best");
}

bool isAudioOnlySelector(const QString &selector)
{
    return selector.contains(QLatin1String("bestaudio")) &&
           !selector.contains(QLatin1String("bestvideo"));
}

QString preferH264Selector(const QString &selector)
{
    if (isAudioOnlySelector(selector)) {
        return selector;
    }
    if (selector == QLatin1String("best")) {
        return QStringLiteral("bestvideo[vcodec~='^(avc1|h264)']+bestaudio[ext=m4a]"
                              "/bestvideo*+bestaudio/best");
    }
    if (!selector.contains(QLatin1String("bestvideo[height<="))) {
        return selector;
    }
    const auto begin = selector.indexOf(u'<');
    const auto end = selector.indexOf(u']', begin);
    if (end < 0) {
        return selector;
    }
    const QString height = selector.mid(begin, end - begin);
    return QStringLiteral("bestvideo[vcodec~='^(avc1|h264)'][height") + height +
           QStringLiteral("]+bestaudio[ext=m4a]") + QStringLiteral("/bestvideo*[height") + height +
           QStringLiteral("]+bestaudio") + QStringLiteral("/best[height") + height +
           QStringLiteral("]") + QStringLiteral("/best");
}

}
