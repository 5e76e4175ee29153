// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/picker/format_sections.h"

#include "platform/byte_count.h"

#include <QCoreApplication>

#include <algorithm>
#include <iterator>

namespace veltro {
namespace {

QString pickerText(const char *source)
{
    return QCoreApplication::translate("FormatPicker", source);
}

bool beginsWithOneOf(const QString &text, std::initializer_list<QLatin1String> beginnings)
{
    return std::any_of(beginnings.begin(), beginnings.end(),
                       [&](QLatin1String beginning) { return text.startsWith(beginning); });
}

/// Whether the section counts the format.
bool belongsTo(FormatSection section, const Format &format)
{
    switch (section) {
    case FormatSection::video:
        return !format.isAudioOnly;
    case FormatSection::audio:
        return format.isAudioOnly;
    case FormatSection::all:
        return true;
    }
    Q_UNREACHABLE();
}

/// The page's item as a whole, for a page that lists no formats: it is its own only one.
Format itemItself()
{
    Format format;
    format.id = QStringLiteral("best");
    format.ext = QStringLiteral("mp4");
    return format;
}

QString nothingPlays(FormatSection section, int count)
{
    switch (section) {
    case FormatSection::video:
        return count == 1 ? pickerText("The one video format of this page would not play here as "
                                       "it is.")
                          : pickerText("None of the %1 video formats of this page would play here "
                                       "as they are.")
                                .arg(count);
    case FormatSection::audio:
        return count == 1 ? pickerText("The one audio format of this page would not play here.")
                          : pickerText("None of the %1 audio formats of this page would play here.")
                                .arg(count);
    case FormatSection::all:
        return count == 1
                   ? pickerText("The one format of this page would not play here as it is.")
                   : pickerText("None of the %1 formats of this page would play here as they are.")
                         .arg(count);
    }
    Q_UNREACHABLE();
}

}

QString sectionTitle(FormatSection section)
{
    switch (section) {
    case FormatSection::video:
        return pickerText("Video");
    case FormatSection::audio:
        return pickerText("Audio");
    case FormatSection::all:
        return pickerText("All");
    }
    Q_UNREACHABLE();
}

bool playsInPlayer(const Format &format)
{
    if (format.isAudioOnly) {
        const QString extension = format.ext.toLower();
        return beginsWithOneOf(format.acodec.value_or(QString()).toLower(),
                               {QLatin1String("mp4a"), QLatin1String("aac")}) ||
               extension == QLatin1String("m4a") || extension == QLatin1String("mp3");
    }
    return beginsWithOneOf(format.vcodec.value_or(QString()).toLower(),
                           {QLatin1String("avc1"), QLatin1String("h264"), QLatin1String("h265"),
                            QLatin1String("hvc1")});
}

int countOf(FormatSection section, const std::vector<Format> &formats)
{
    return static_cast<int>(
        std::count_if(formats.begin(), formats.end(),
                      [&](const Format &format) { return belongsTo(section, format); }));
}

std::vector<Format> rowsOf(FormatSection section, const std::vector<Format> &formats)
{
    std::vector<Format> rows;
    std::copy_if(
        formats.begin(), formats.end(), std::back_inserter(rows),
        [&](const Format &format) { return belongsTo(section, format) && playsInPlayer(format); });
    return rows;
}

QString extensionText(const Format &format)
{
    return format.ext.toUpper();
}

QString sizeText(const Format &format)
{
    return format.filesizeBytes ? fileByteCount(*format.filesizeBytes) : QString();
}

EmptySection emptySection(FormatSection section, const MediaInfo &info)
{
    if (info.formats.empty()) {
        return {pickerText("This page lists no formats to choose from."),
                pickerText("Save it as it is"), itemItself()};
    }
    const int count = countOf(section, info.formats);
    if (count == 0) {
        return {section == FormatSection::audio
                    ? pickerText("This page has no format with sound only.")
                    : pickerText("This page has sound only."),
                {},
                {}};
    }
    // The page lists the worst first.
    const auto best =
        std::find_if(info.formats.rbegin(), info.formats.rend(),
                     [&](const Format &format) { return belongsTo(section, format); });
    // A page that tells no codecs may well name what plays.
    const bool isUntold = !best->isAudioOnly && !best->vcodec;
    return {isUntold && count == 1
                ? pickerText("This page does not tell how its one format is encoded.")
                : nothingPlays(section, count),
            best->isAudioOnly || isUntold ? pickerText("Save %1").arg(best->label().trimmed())
                                          : pickerText("Save and convert %1").arg(best->label()),
            *best};
}

}
