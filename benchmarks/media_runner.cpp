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

void runAndReport(const std::vector<std::string> &arguments)
{
    using std::chrono::steady_clock;
    const double processor = processorSeconds();
    const auto begin = steady_clock::now();
    const auto session = veltro::ffmpeg::mediaTools().makeSession();
    const int code = session->run(arguments);
    const std::chrono::duration<double> wall = steady_clock::now() - begin;
    if (code != 0) {
        std::cerr << session->log();
    }
    std::cout << code << ' ' << wall.count() << ' ' << processorSeconds() - processor << std::endl;
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
