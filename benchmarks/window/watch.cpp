// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// Watches a program's window from outside, by the display alone:
//
//     veltro-bench-watch start COMMAND…    until a letter that was typed at the first frame shows
//     veltro-bench-watch ready COMMAND…    until the engine's dot is green
//     veltro-bench-watch memory COMMAND…   what it takes ten seconds after that
//     veltro-bench-watch idle COMMAND…     what each tab does while nobody does anything
//
// Prints JSON objects. Seconds count from before the process is made.
#include "benchmarks/window/display.h"

#include <csignal>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace veltro::bench {
namespace {

using namespace std::chrono_literals;

constexpr auto longestWait = 60s;
constexpr auto settling = 3s;
constexpr auto idling = 30s;
// The headline has some 13,000 dark pixels, all other texts have a few thousand, and a window of
// which nothing is painted yet is dark all over.
constexpr int headlinePixels = 8'000;
constexpr int unpaintedPixels = 100'000;
// An "m" of 18 pixels has some thirty.
constexpr int letterPixels = 15;
constexpr int dotPixels = 20;
constexpr xcb_keysym_t letter = 'm';

double seconds(Clock::duration time)
{
    return std::chrono::duration<double>(time).count();
}

/// A program in a process of its own, ended with this.
class Child {
public:
    explicit Child(char **command) : m_begin(Clock::now()), m_process(fork())
    {
        if (m_process == 0) {
            const int nothing = open("/dev/null", O_RDWR);
            dup2(nothing, STDOUT_FILENO);
            dup2(nothing, STDERR_FILENO);
            execvp(command[0], command);
            _exit(127);
        }
    }
    ~Child()
    {
        kill(m_process, SIGTERM);
        waitpid(m_process, nullptr, 0);
    }
    Child(const Child &) = delete;
    Child &operator=(const Child &) = delete;

    [[nodiscard]] Clock::time_point begin() const { return m_begin; }

    /// Seconds that all its threads have worked.
    [[nodiscard]] double worked() const
    {
        clockid_t clock{};
        timespec time{};
        if (clock_getcpuclockid(m_process, &clock) != 0 || clock_gettime(clock, &time) != 0) {
            throw std::runtime_error("the program has ended");
        }
        return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
    }

    /// Its proportional set size in megabytes.
    [[nodiscard]] double proportionalSize() const
    {
        std::ifstream lines("/proc/" + std::to_string(m_process) + "/smaps_rollup");
        for (std::string word; lines >> word;) {
            if (double kibibytes = 0; word == "Pss:" && lines >> kibibytes) {
                return kibibytes * 1024 / 1e6;
            }
        }
        throw std::runtime_error("the program has ended");
    }

private:
    const Clock::time_point m_begin;
    const pid_t m_process;
};

/// The first frame after which the screen is as wished.
Clock::time_point frameWith(Display &display, const char *what,
                            const std::function<bool(const Sight &)> &isThere)
{
    const auto deadline = Clock::now() + longestWait;
    while (const auto frame = display.nextFrame(deadline)) {
        if (isThere(display.look())) {
            return *frame;
        }
    }
    throw std::runtime_error(std::string("no frame shows ") + what);
}

Clock::time_point headline(Display &display)
{
    return frameWith(display, "the headline", [](const Sight &sight) {
        return sight.dark >= headlinePixels && sight.dark < unpaintedPixels;
    });
}

Clock::time_point readyDot(Display &display)
{
    return frameWith(display, "that the engine is ready",
                     [](const Sight &sight) { return sight.ready >= dotPixels; });
}

void start(char **command)
{
    Display display(Display::Watches::paints);
    const Child child(command);
    const auto first = headline(display);
    const int before = display.look().dark;
    display.press(letter);
    const auto typed = frameWith(display, "the letter", [before](const Sight &sight) {
        return sight.dark >= before + letterPixels;
    });
    std::printf("{\"headline\": %.6f, \"letter\": %.6f}\n", seconds(first - child.begin()),
                seconds(typed - child.begin()));
}

void ready(char **command)
{
    Display display(Display::Watches::paints);
    const Child child(command);
    const auto first = headline(display);
    const auto ready = readyDot(display);
    std::printf("{\"headline\": %.6f, \"ready\": %.6f}\n", seconds(first - child.begin()),
                seconds(ready - child.begin()));
}

void memory(char **command)
{
    Display display(Display::Watches::paints);
    const Child child(command);
    (void)readyDot(display);
    std::this_thread::sleep_for(10s);
    std::printf("{\"megabytes\": %.3f}\n", child.proportionalSize());
}

int framesUntil(Display &display, Clock::time_point end)
{
    int frames = 0;
    while (display.nextFrame(end)) {
        ++frames;
    }
    return frames;
}

void idle(char **command)
{
    struct Tab {
        const char *name;
        xcb_keysym_t key; // with Control
    };
    Display display(Display::Watches::paints);
    const Child child(command);
    (void)readyDot(display);
    for (const Tab &tab :
         {Tab{"Home", 0}, Tab{"Library", '2'}, Tab{"Queue", '3'}, Tab{"Settings", ','}}) {
        if (tab.key != 0) {
            display.press(tab.key, true);
        }
        (void)framesUntil(display, Clock::now() + settling);
        const double before = child.worked();
        const int frames = framesUntil(display, Clock::now() + idling);
        std::printf("{\"tab\": \"%s\", \"frames\": %d, \"worked\": %.6f, \"seconds\": %.0f}\n",
                    tab.name, frames, child.worked() - before, seconds(idling));
        std::fflush(stdout);
    }
}

void run(const std::string &what, char **command)
{
    if (what == "start") {
        start(command);
    } else if (what == "ready") {
        ready(command);
    } else if (what == "memory") {
        memory(command);
    } else if (what == "idle") {
        idle(command);
    } else {
        throw std::runtime_error("there is no measurement " + what);
    }
}

}
}

int main(int argc, char *argv[])
{
    if (argc < 3) {
        std::fputs("usage: veltro-bench-watch start|ready|memory|idle COMMAND…\n", stderr);
        return 2;
    }
    try {
        veltro::bench::run(argv[1], argv + 2);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
