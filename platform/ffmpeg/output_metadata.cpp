// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/output_metadata.h"

#include "platform/ffmpeg/libav_versions.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>

namespace veltro::ffmpeg {
namespace {

/// What a metadata specifier names: "g", "s:a:0", "c:1" or "p:0".
struct MetadataPlace {
    char kind = 'g'; ///< whole file, stream, chapter or program
    bool isNamed = false;
    std::string streams;
    unsigned index = 0; ///< of a chapter or a program
};

MetadataPlace parsePlace(const std::string &text)
{
    MetadataPlace place;
    if (text.empty()) {
        return place;
    }
    place.isNamed = true;
    place.kind = text.front();
    const bool hasMore = text.size() > 1 && text[1] == ':';
    const std::string rest = hasMore ? text.substr(2) : std::string();
    if (place.kind == 's') {
        if (text.size() > 1 && !hasMore) {
            throw CommandFailed("Invalid metadata specifier " + text.substr(1) + ".");
        }
        place.streams = rest;
    } else if (place.kind == 'c' || place.kind == 'p') {
        std::from_chars(rest.data(), rest.data() + rest.size(), place.index);
    } else if (place.kind != 'g') {
        throw CommandFailed("Invalid metadata type " + text.substr(0, 1) + ".");
    }
    return place;
}

// The tags of a whole file, a chapter or a program.
AVDictionary *&tagsAt(AVFormatContext &file, const MetadataPlace &place)
{
    const bool isChapter = place.kind == 'c';
    const unsigned count = isChapter ? file.nb_chapters : file.nb_programs;
    if (place.kind == 'g') {
        return file.metadata;
    }
    if (place.index >= count) {
        throw CommandFailed("Invalid " + std::string(isChapter ? "chapter" : "program") +
                            " index " + std::to_string(place.index) +
                            " while processing metadata maps.");
    }
    return isChapter ? file.chapters[place.index]->metadata : file.programs[place.index]->metadata;
}

const AVDictionary *sourceTags(AVFormatContext &file, const MetadataPlace &place)
{
    if (place.kind != 's') {
        return tagsAt(file, place);
    }
    for (unsigned i = 0; i < file.nb_streams; ++i) {
        if (matchesStream(&file, file.streams[i], place.streams)) {
            return file.streams[i]->metadata;
        }
    }
    throw CommandFailed("Stream specifier " + place.streams + " does not match  any streams.");
}

/// Which tags are not copied by default because the command line speaks of them.
struct SettledByHand {
    bool file = false;
    bool streams = false;
    bool chapters = false;

    void settle(const MetadataPlace &place)
    {
        file = file || place.kind == 'g';
        streams = streams || place.kind == 's';
        chapters = chapters || place.kind == 'c';
    }
};

void mapTags(OutputFile &output, const InputFiles &inputs, const GivenOption &map,
             SettledByHand &settled)
{
    const MetadataPlace to = parsePlace(map.specifier);
    int number = 0;
    const char *end = map.value.data() + map.value.size();
    const char *rest = std::from_chars(map.value.data(), end, number).ptr;
    if (number >= static_cast<int>(inputs.size())) {
        throw CommandFailed("Invalid input file index " + std::to_string(number) +
                            " while processing metadata maps");
    }
    const MetadataPlace from = parsePlace(std::string(rest == end ? rest : rest + 1, end));
    if (number < 0) { // nothing is copied
        settled.settle(to);
        if (!to.isNamed) {
            settled = {true, true, true};
        }
        return;
    }
    settled.settle(from);
    settled.settle(to);
    AVFormatContext &source = *inputs[static_cast<std::size_t>(number)]->context();
    const AVDictionary *tags = sourceTags(source, from);
    AVFormatContext &target = *output.context();
    if (to.kind != 's') {
        av_dict_copy(&tagsAt(target, to), tags, AV_DICT_DONT_OVERWRITE);
        return;
    }
    for (unsigned i = 0; i < target.nb_streams; ++i) {
        if (matchesStream(&target, target.streams[i], to.streams)) {
            av_dict_copy(&target.streams[i]->metadata, tags, AV_DICT_DONT_OVERWRITE);
        }
    }
}

InputFile *chapterSource(const OutputFile &output, const InputFiles &inputs)
{
    if (const auto text = output.arguments().value("map_chapters")) {
        const std::int64_t number =
            parseInteger("map_chapters", std::string(*text), INT32_MIN, INT32_MAX);
        if (number >= static_cast<std::int64_t>(inputs.size())) {
            throw CommandFailed("Invalid input file index " + std::to_string(number) +
                                " in chapter mapping.");
        }
        return number < 0 ? nullptr : inputs[static_cast<std::size_t>(number)].get();
    }
    const auto found = std::find_if(inputs.begin(), inputs.end(), [](const auto &input) {
        return input->context()->nb_chapters > 0;
    });
    return found == inputs.end() ? nullptr : found->get();
}

void addChapter(AVFormatContext &file, const AVChapter &chapter)
{
    auto *added = static_cast<AVChapter *>(av_mallocz(sizeof(AVChapter)));
    auto *list = static_cast<AVChapter **>(av_realloc_array(
        static_cast<void *>(file.chapters), file.nb_chapters + 1, sizeof(AVChapter *)));
    if (list) {
        file.chapters = list;
    }
    if (!added || !list) {
        av_free(added);
        throw CommandFailed("Cannot allocate memory");
    }
    added->id = chapter.id;
    added->time_base = chapter.time_base;
    added->start = chapter.start;
    added->end = chapter.end;
    file.chapters[file.nb_chapters++] = added;
}

// Chapters keep their place in the material: they move with what -ss cuts off and end where -t
// does.
void copyChapters(OutputFile &output, InputFile &source, bool withTags)
{
    const AVFormatContext &from = *source.context();
    for (unsigned i = 0; i < from.nb_chapters; ++i) {
        const AVChapter &chapter = *from.chapters[i];
        const std::int64_t offset = av_rescale_q(subtractTime(output.start(), source.offset()),
                                                 microseconds, chapter.time_base);
        const std::int64_t length =
            output.range().duration
                ? av_rescale_q(*output.range().duration, microseconds, chapter.time_base)
                : std::numeric_limits<std::int64_t>::max();
        if (chapter.end < offset) {
            continue;
        }
        if (output.range().duration && chapter.start > addTime(length, offset)) {
            break;
        }
        AVChapter moved = chapter;
        moved.start = std::max(std::int64_t{0}, subtractTime(chapter.start, offset));
        moved.end = std::min(length, subtractTime(chapter.end, offset));
        addChapter(*output.context(), moved);
        if (withTags) {
            AVFormatContext &to = *output.context();
            av_dict_copy(&to.chapters[to.nb_chapters - 1]->metadata, chapter.metadata, 0);
        }
    }
}

void copyFileTags(OutputFile &output, const InputFile &source)
{
    AVDictionary *&tags = output.context()->metadata;
    av_dict_copy(&tags, source.context()->metadata, AV_DICT_DONT_OVERWRITE);
    if (output.range().duration) {
        av_dict_set(&tags, "duration", nullptr, 0);
    }
    // These speak of the making of the other file.
    constexpr std::array stale{"creation_time", "company_name", "product_name", "product_version"};
    for (const char *name : stale) {
        av_dict_set(&tags, name, nullptr, 0);
    }
}

void copyStreamTags(const OutputStream &stream)
{
    if (!stream.source) {
        return;
    }
    AVDictionary *&tags = stream.stream->metadata;
    av_dict_copy(&tags, stream.source->stream->metadata, AV_DICT_DONT_OVERWRITE);
    if (!stream.isCopied) {
        av_dict_set(&tags, "encoder", nullptr, 0);
    }
}

// "rotate" is not kept as a tag: it says how the picture is to be turned.
bool takesRotation(OutputStream &stream, const std::string &key, const std::string &value)
{
    if (key != "rotate") {
        return false;
    }
    char *end = nullptr;
    const double degrees = av_strtod(value.c_str(), &end);
    if (!*end) {
        stream.rotation = degrees;
    }
    return true;
}

void setTag(OutputFile &output, const GivenOption &given)
{
    const auto equals = given.value.find('=');
    if (equals == std::string::npos) {
        throw CommandFailed("No '=' character in metadata string " + given.value + ".");
    }
    const std::string key = given.value.substr(0, equals);
    const std::string value = given.value.substr(equals + 1);
    const char *text = value.empty() ? nullptr : value.c_str(); // an empty value removes the tag
    const MetadataPlace place = parsePlace(given.specifier);
    AVFormatContext &file = *output.context();
    if (place.kind != 's') {
        av_dict_set(&tagsAt(file, place), key.c_str(), text, 0);
        return;
    }
    for (const auto &stream : output.streams()) {
        if (matchesStream(&file, stream->stream, place.streams) &&
            !takesRotation(*stream, key, value)) {
            av_dict_set(&stream->stream->metadata, key.c_str(), text, 0);
        }
    }
}

void setDisposition(AVStream &stream, const std::string &text)
{
    const AVClass *type = av_stream_get_class();
    const AVOption *option =
        av_opt_find(static_cast<void *>(&type), "disposition", nullptr, 0, AV_OPT_SEARCH_FAKE_OBJ);
    // Words like "+default" change what the stream has, so its value is where the reading begins.
    int flags = stream.disposition;
    if (!option ||
        av_opt_eval_flags(static_cast<void *>(&type), option, text.c_str(), &flags) < 0) {
        throw CommandFailed("Error setting output stream dispositions");
    }
    stream.disposition = flags;
}

// Of several streams of a kind one is marked as the one to play.
void chooseDefaults(const OutputFile &output)
{
    std::array<int, AVMEDIA_TYPE_NB> count{};
    std::array<bool, AVMEDIA_TYPE_NB> hasDefault{};
    const auto slot = [](const OutputStream &stream) {
        return static_cast<std::size_t>(std::max(0, static_cast<int>(stream.type())));
    };
    for (const auto &stream : output.streams()) {
        ++count[slot(*stream)];
        if (stream->stream->disposition & AV_DISPOSITION_DEFAULT) {
            hasDefault[slot(*stream)] = true;
        }
    }
    for (const auto &stream : output.streams()) {
        const std::size_t kind = slot(*stream);
        if (count[kind] < 2 || hasDefault[kind] ||
            stream->stream->disposition & AV_DISPOSITION_ATTACHED_PIC) {
            continue;
        }
        stream->stream->disposition |= AV_DISPOSITION_DEFAULT;
        hasDefault[kind] = true;
    }
}

void setDispositions(const OutputFile &output)
{
    bool byHand = false;
    for (const auto &stream : output.streams()) {
        if (stream->source) {
            stream->stream->disposition = stream->source->stream->disposition;
        }
        byHand = byHand || stream->disposition;
    }
    if (!byHand) {
        chooseDefaults(output);
        return;
    }
    for (const auto &stream : output.streams()) {
        if (stream->disposition) {
            setDisposition(*stream->stream, *stream->disposition);
        }
    }
}

}

void describeOutput(OutputFile &output, const InputFiles &inputs)
{
    SettledByHand settled;
    for (const GivenOption &given : output.arguments().options) {
        if (given.name == "map_metadata") {
            mapTags(output, inputs, given, settled);
        }
    }
    if (InputFile *source = chapterSource(output, inputs)) {
        copyChapters(output, *source, !settled.chapters);
    }
    if (!settled.file && !inputs.empty()) {
        copyFileTags(output, *inputs.front());
    }
    for (const auto &stream : output.streams()) {
        if (!settled.streams) {
            copyStreamTags(*stream);
        }
    }
    for (const GivenOption &given : output.arguments().options) {
        if (given.name == "metadata") {
            setTag(output, given);
        }
    }
    setDispositions(output);
}

}
