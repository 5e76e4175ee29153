// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// veltro-fuzz TARGET CORPUS [--seed N] [--first N] [--runs N | --seconds N] [--keep FOLDER]
// veltro-fuzz TARGET CORPUS --file KEPT...
//
// Tries a target on changed inputs. The input of a run follows from the seed and the run's number
// alone. A promise that is broken, a run that does not end and memory beyond all measure stop the
// program like a crash: with a code other than 0, and with the input in the folder to keep it in.
#include "tests/fuzz/targets.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <optional>
#include <sys/resource.h>
#include <thread>

namespace veltro::fuzz {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

// A sanitizer on a busy machine is thirty times as slow as a user's.
constexpr std::chrono::seconds untilCancelled(10);
constexpr std::chrono::seconds untilGivenUp(120);
constexpr long largestMemoryKiB = 3L << 20;

struct Order {
    std::string target;
    fs::path corpus;
    fs::path keep = ".";
    std::vector<fs::path> files;
    std::uint64_t seed = 1;
    std::uint64_t first = 0;
    std::uint64_t runs = 1000;
    std::optional<std::chrono::seconds> length;
};

// Cancels what takes long, as a user would, and stops the program when that does not help.
class Watch {
public:
    explicit Watch(RunningSession &running) : m_running(running), m_thread([this] { watch(); }) {}
    ~Watch()
    {
        {
            const std::lock_guard guard(m_lock);
            m_isOver = true;
        }
        m_changed.notify_one();
        m_thread.join();
    }
    Watch(const Watch &) = delete;
    Watch &operator=(const Watch &) = delete;

    void begin()
    {
        const std::lock_guard guard(m_lock);
        m_begun = Clock::now();
    }
    [[nodiscard]] int cancelled() const { return m_cancelled; }

private:
    void watch()
    {
        std::unique_lock lock(m_lock);
        std::optional<Clock::time_point> last;
        while (!m_changed.wait_for(lock, std::chrono::milliseconds(500),
                                   [this] { return m_isOver; })) {
            const auto taken = Clock::now() - m_begun;
            if (taken > untilGivenUp) {
                std::fputs("the run does not end\n", stderr);
                std::abort();
            }
            if (taken > untilCancelled) {
                m_running.cancel();
                m_cancelled += last != m_begun ? 1 : 0;
                last = m_begun;
            }
        }
    }

    RunningSession &m_running;
    std::mutex m_lock;
    std::condition_variable m_changed;
    Clock::time_point m_begun = Clock::now(); // guarded by m_lock
    bool m_isOver = false;                    // guarded by m_lock
    std::atomic<int> m_cancelled = 0;
    std::thread m_thread; // the last member: it uses the others
};

// Stays when the program stops in the middle of a run.
class KeptInput {
public:
    explicit KeptInput(fs::path folder) : m_folder(std::move(folder)) {}
    ~KeptInput() { forget(); }
    KeptInput(const KeptInput &) = delete;
    KeptInput &operator=(const KeptInput &) = delete;

    void keep(const Order &order, std::uint64_t number, const Target &target)
    {
        m_file = m_folder / (order.target + "-" + std::to_string(order.seed) + "-" +
                             std::to_string(number) + target.extension());
        writeBytes(m_file, target.input());
    }
    void forget() noexcept
    {
        std::error_code ignored;
        fs::remove(m_file, ignored);
    }
    void leave() { m_file.clear(); }
    [[nodiscard]] const fs::path &file() const { return m_file; }

private:
    const fs::path m_folder;
    fs::path m_file;
};

void requireLittleMemory()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    if (usage.ru_maxrss > largestMemoryKiB) {
        throw PromiseBroken("a run takes no more than 3 GiB");
    }
}

int tryChanged(const Order &order, Target &target, RunningSession &running)
{
    Watch watch(running);
    KeptInput kept(order.keep);
    const auto begin = Clock::now();
    std::uint64_t number = order.first;
    unsigned long long well = 0;
    const auto isOver = [&] {
        return order.length ? Clock::now() - begin >= *order.length
                            : number >= order.first + order.runs;
    };
    for (; !isOver(); ++number) {
        Chance chance(order.seed * 0x100000001b3 + number);
        target.prepare(chance);
        kept.keep(order, number, target);
        watch.begin();
        try {
            well += target.run(running) ? 1 : 0;
            requireLittleMemory();
        } catch (const PromiseBroken &broken) {
            std::fprintf(stderr, "not so: %s\n%s\n", broken.what(), kept.file().c_str());
            kept.leave();
            return 1;
        }
        kept.forget();
    }
    const unsigned long long runs = number - order.first;
    std::printf("%s: %llu runs, %llu of which went well, %d cancelled for their length\n",
                order.target.c_str(), runs, well, watch.cancelled());
    std::fflush(stdout); // a sanitizer that ends the program drops what is not written yet
    // Changes that let nothing through try nothing.
    return runs >= 100 && well * 20 < runs ? 1 : 0;
}

int tryKept(const Order &order, Target &target, RunningSession &running)
{
    for (const fs::path &file : order.files) {
        Watch watch(running);
        target.load(file);
        static_cast<void>(target.run(running));
    }
    std::printf("%s: %zu kept inputs\n", order.target.c_str(), order.files.size());
    return 0;
}

std::optional<Order> readOrder(const Words &arguments)
{
    if (arguments.size() < 2) {
        return std::nullopt;
    }
    Order order;
    order.target = arguments[0];
    order.corpus = fs::absolute(arguments[1]);
    for (std::size_t i = 2; i + 1 < arguments.size(); i += 2) {
        const std::string &name = arguments[i];
        const std::string &value = arguments[i + 1];
        if (name == "--seed") {
            order.seed = std::stoull(value);
        } else if (name == "--first") {
            order.first = std::stoull(value);
        } else if (name == "--runs") {
            order.runs = std::stoull(value);
        } else if (name == "--seconds") {
            order.length = std::chrono::seconds(std::stoll(value));
        } else if (name == "--keep") {
            order.keep = value;
        } else if (name == "--file") {
            order.files.assign(arguments.begin() + static_cast<std::ptrdiff_t>(i) + 1,
                               arguments.end());
            break;
        } else {
            return std::nullopt;
        }
    }
    order.keep = fs::absolute(order.keep);
    for (fs::path &file : order.files) {
        file = fs::absolute(file);
    }
    return order;
}

int fuzz(const Words &arguments)
{
    const std::optional<Order> order = readOrder(arguments);
    const ScratchFolder scratch;
    const auto target = order ? makeTarget(order->target, order->corpus, scratch) : nullptr;
    if (!target) {
        std::fputs("usage: veltro-fuzz arguments|probe|still|copy|transcode CORPUS [--seed N]\n"
                   "       [--first N] [--runs N | --seconds N] [--keep FOLDER] [--file KEPT...]\n",
                   stderr);
        return 2;
    }
    RunningSession running;
    return order->files.empty() ? tryChanged(*order, *target, running)
                                : tryKept(*order, *target, running);
}

}
}

int main(int count, char **texts)
try {
    return veltro::fuzz::fuzz({texts + 1, texts + count});
} catch (const std::exception &error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
