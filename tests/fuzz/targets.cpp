// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/fuzz/targets.h"

#include "platform/ffmpeg/media_module.h"
#include "platform/ffmpeg/safe_input.h"

#include <algorithm>
#include <cmath>
#include <sstream>
#include <utility>

namespace veltro::fuzz {
namespace {

namespace fs = std::filesystem;

void require(bool holds, const std::string &promise)
{
    if (!holds) {
        throw PromiseBroken(promise);
    }
}

ffmpeg::MediaTools &tools()
{
    return *veltroMediaTools();
}

struct Seed {
    std::string extension;
    Bytes content;
};

std::vector<Seed> readSeeds(const fs::path &folder)
{
    std::vector<fs::path> files;
    for (const fs::directory_entry &entry : fs::directory_iterator(folder)) {
        files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end()); // the order of a folder is no order
    std::vector<Seed> seeds;
    seeds.reserve(files.size());
    for (const fs::path &file : files) {
        seeds.push_back({file.extension().string(), readBytes(file)});
    }
    return seeds;
}

int runSession(const Words &arguments, RunningSession &running, std::string &log)
{
    const auto session = tools().makeSession();
    running.set(session.get());
    const int code = session->run(arguments);
    running.set(nullptr);
    log = session->log();
    return code;
}

class FileTarget : public Target {
public:
    FileTarget(const fs::path &corpus, const ScratchFolder &scratch)
        : m_scratch(scratch), m_seeds(readSeeds(corpus / "files"))
    {
        require(!m_seeds.empty(), "the corpus holds files");
    }

    void prepare(Chance &chance) override
    {
        const Seed &seed = m_seeds[chance.below(m_seeds.size())];
        m_content = seed.content;
        mutate(m_content, m_seeds[chance.below(m_seeds.size())].content, chance);
        // A file is often not what it is called.
        m_extension = chance.oneIn(4) ? std::string(".mp4") : seed.extension;
        m_number = chance.number();
        place();
    }

    void load(const fs::path &kept) override
    {
        m_content = readBytes(kept);
        m_extension = kept.extension().string();
        m_number = 0;
        place();
    }

    [[nodiscard]] Bytes input() const override { return m_content; }
    [[nodiscard]] std::string extension() const override { return m_extension; }

protected:
    [[nodiscard]] fs::path file() const { return m_scratch.path() / ("input" + m_extension); }
    [[nodiscard]] fs::path inScratch(const std::string &name) const
    {
        return m_scratch.path() / name;
    }
    [[nodiscard]] std::uint64_t number() const { return m_number; }

    void requireNothingElse() const
    {
        const auto files = m_scratch.files();
        require(files.size() == 1 && files.begin()->second == m_content.size(),
                "nothing is left beside the input, and that is as it was");
    }

private:
    void place()
    {
        m_scratch.clear();
        writeBytes(file(), m_content);
    }

    const ScratchFolder &m_scratch;
    const std::vector<Seed> m_seeds;
    Bytes m_content;
    std::string m_extension;
    std::uint64_t m_number = 0;
};

class ProbeTarget : public FileTarget {
public:
    using FileTarget::FileTarget;
    bool run(RunningSession &) override
    {
        const std::string name = "file:" + file().string();
        static_cast<void>(tools().streams(file()));
        const Words asJson{"-hide_banner",  "-show_format", "-show_streams",
                           "-print_format", "json",         name};
        const ffmpeg::CommandResult answer = tools().probe(asJson);
        require(answer.code == 0 || answer.code == 1, "a probe ends with 0 or 1");
        require(answer.code == 0 || !answer.log.empty(), "a probe that fails says why");
        static_cast<void>(tools().probe(Words{"-show_streams", name}));
        const auto seconds = tools().duration(file());
        require(!seconds || (*seconds > 0 && std::isfinite(*seconds)), "a duration is a time");
        requireNothingElse();
        return answer.code == 0;
    }
};

class StillTarget : public FileTarget {
public:
    using FileTarget::FileTarget;
    bool run(RunningSession &) override
    {
        const auto image = tools().still(file(), 1.0, 800, 800, 0.7);
        require(!image || (image->size() > 100 && (*image)[0] == 0xff && (*image)[1] == 0xd8),
                "a still is a JPEG");
        requireNothingElse();
        return image.has_value();
    }
};

class CopyTarget : public FileTarget {
public:
    using FileTarget::FileTarget;
    bool run(RunningSession &running) override
    {
        static const Words endings{"mp4", "mkv", "ts", "m4a", "webm", "flv", "mp3", "srt"};
        const fs::path output = inScratch("output." + endings[number() % endings.size()]);
        return runAndCheck({"-y", "-loglevel", "repeat+info", "-i", "file:" + file().string(),
                            "-map", "0", "-dn", "-ignore_unknown", "-c", "copy", "-movflags",
                            "+faststart", "file:" + output.string()},
                           output, running);
    }

protected:
    bool runAndCheck(const Words &arguments, const fs::path &output, RunningSession &running) const
    {
        std::string log;
        const int code = runSession(arguments, running, log);
        require(code >= 0, "a run has a code");
        require(fs::exists(output) == (code == 0),
                "there is an output if and only if all went well");
        require(code == 0 || !log.empty(), "a run that fails says why");
        fs::remove(output);
        requireNothingElse();
        return code == 0;
    }
};

class TranscodeTarget : public CopyTarget {
public:
    using CopyTarget::CopyTarget;
    bool run(RunningSession &running) override
    {
        const fs::path output = inScratch("output.mp4");
        return runAndCheck({"-y", "-hide_banner", "-i", file().string(), "-c:v",
                            "h264_videotoolbox", "-b:v", "4M", "-allow_sw", "1", "-pix_fmt",
                            "yuv420p", "-c:a", "copy", "-movflags", "+faststart", output.string()},
                           output, running);
    }
};

Words wordsOf(const std::string &line)
{
    std::istringstream stream(line);
    Words words;
    for (std::string word; stream >> word;) {
        words.push_back(word);
    }
    return words;
}

class ArgumentsTarget : public Target {
public:
    ArgumentsTarget(const fs::path &corpus, const ScratchFolder &scratch)
        : m_scratch(scratch), m_media(corpus / "media")
    {
        const Bytes text = readBytes(corpus / "arguments.txt");
        std::istringstream lines(std::string(text.begin(), text.end()));
        for (std::string line; std::getline(lines, line);) {
            m_commands.push_back(wordsOf(line));
            m_pool.insert(m_pool.end(), m_commands.back().begin(), m_commands.back().end());
        }
        require(!m_commands.empty(), "the corpus holds command lines");
        fs::current_path(scratch.path()); // names are relative: nothing else is within reach
    }

    void prepare(Chance &chance) override
    {
        do {
            m_command = m_commands[chance.below(m_commands.size())];
            mutate(m_command, m_pool, chance);
        } while (!staysHere());
        place();
    }

    void load(const fs::path &kept) override
    {
        const Bytes text = readBytes(kept);
        m_command.clear();
        std::istringstream lines(std::string(text.begin(), text.end()));
        for (std::string line; std::getline(lines, line, '\0');) {
            m_command.push_back(line);
        }
        require(staysHere(), "the arguments name nothing outside");
        place();
    }

    bool run(RunningSession &running) override
    {
        const auto before = m_scratch.files();
        std::string log;
        const int code = runSession(m_command, running, log);
        require(code >= 0, "a run has a code");
        for (const auto &[name, size] : m_scratch.files()) {
            require(code == 0 || before.contains(name), "a run that fails leaves nothing: " + name);
        }
        return code == 0;
    }

    [[nodiscard]] Bytes input() const override
    {
        Bytes text;
        for (const std::string &word : m_command) {
            text.insert(text.end(), word.begin(), word.end());
            text.push_back(0);
        }
        return text;
    }
    [[nodiscard]] std::string extension() const override { return ".arguments"; }

private:
    // No word may lead out of the scratch folder or into the network.
    [[nodiscard]] bool staysHere() const
    {
        return std::none_of(m_command.begin(), m_command.end(), [](const std::string &word) {
            const bool isNetwork = ffmpeg::classifyInput(word).kind == ffmpeg::InputKind::network;
            return isNetwork || word.find('/') != std::string::npos ||
                   word.find('\0') != std::string::npos;
        });
    }

    void place() const
    {
        m_scratch.clear();
        for (const fs::directory_entry &entry : fs::directory_iterator(m_media)) {
            fs::copy_file(entry.path(), m_scratch.path() / entry.path().filename());
        }
    }

    const ScratchFolder &m_scratch;
    const fs::path m_media;
    std::vector<Words> m_commands;
    Words m_pool;
    Words m_command;
};

}

void RunningSession::set(ffmpeg::Session *session)
{
    const std::lock_guard guard(m_lock);
    m_session = session;
}

void RunningSession::cancel()
{
    const std::lock_guard guard(m_lock);
    if (m_session) {
        m_session->cancel();
    }
}

std::unique_ptr<Target> makeTarget(std::string_view name, const fs::path &corpus,
                                   const ScratchFolder &scratch)
{
    if (name == "arguments") {
        return std::make_unique<ArgumentsTarget>(corpus, scratch);
    }
    if (name == "probe") {
        return std::make_unique<ProbeTarget>(corpus, scratch);
    }
    if (name == "still") {
        return std::make_unique<StillTarget>(corpus, scratch);
    }
    if (name == "copy") {
        return std::make_unique<CopyTarget>(corpus, scratch);
    }
    if (name == "transcode") {
        return std::make_unique<TranscodeTarget>(corpus, scratch);
    }
    return nullptr;
}

}
