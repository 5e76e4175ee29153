// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/media_tools.h"

#include <chrono>
#include <iostream>
#include <string>
#include <sys/resource.h>
#include <vector>

// Runs ffmpeg command lines in one process, as the program does: reads an argument a line from
// standard input, a blank line runs them, and "CODE WALL-SECONDS PROCESSOR-SECONDS" is printed.
// After a first line "ffprobe" come the arguments of a probe, after "still" the name of a file.
// The libraries stay loaded from run to run.

namespace {

double processorSeconds()
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

int run(std::vector<std::string> words)
{
    veltro::ffmpeg::MediaTools &tools = veltro::ffmpeg::mediaTools();
    const std::string kind = words.front();
    if (kind == "still") {
        return tools.still(words.at(1), 1.0, 800, 800, 0.7) ? 0 : 1;
    }
    if (kind == "ffprobe") {
        words.erase(words.begin());
        return tools.probe(words).code;
    }
    const auto session = tools.makeSession();
    const int code = session->run(words);
    if (code != 0) {
        std::cerr << session->log();
    }
    return code;
}

void runAndReport(const std::vector<std::string> &arguments)
{
    using std::chrono::steady_clock;
    const double processor = processorSeconds();
    const auto begin = steady_clock::now();
    const int code = run(arguments);
    const std::chrono::duration<double> wall = steady_clock::now() - begin;
    std::cout << code << ' ' << wall.count() << ' ' << processorSeconds() - processor << '\n'
              << std::flush;
}

}

int main()
{
    std::vector<std::string> arguments;
    for (std::string line; std::getline(std::cin, line);) {
        if (!line.empty()) {
            arguments.push_back(line);
            continue;
        }
        runAndReport(arguments);
        arguments.clear();
    }
    return 0;
}
