// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/bridge/python.h"
#include "engine/bridge/python_lock.h"
#include "engine/runtime/python_executor.h"

#include <QTest>

#include <csignal>
#include <future>
#include <stdexcept>

using namespace veltro;

namespace {

/// What the engine's bootstrap does, on its queue.
void bootstrap(const std::string &module)
{
    PythonExecutor::primary().queue().sync([&] {
        PythonExecutor::runThrowing([&] {
            PythonExecutor::prepareEnvironment();
            const PythonObject imported = Python().attemptImport(module);
            PythonExecutor::releaseStartupThreadState();
        });
    });
}

/// The result of a job submitted to the executor.
template <typename Job>
auto submitted(PythonExecutor &executor, Job job)
{
    auto task = std::make_shared<std::packaged_task<std::invoke_result_t<Job>()>>(std::move(job));
    executor.submit([task] { (*task)(); });
    return task->get_future();
}

bool lockIsFreeOnBothQueues()
{
    return !PythonExecutor::primary().queue().sync([] { return python_lock::isHeld(); }) &&
           !PythonExecutor::probe().queue().sync([] { return python_lock::isHeld(); });
}

bool bothQueuesWork()
{
    const auto three = [] { return (PythonObject(1).attr("__add__")(2)).to<int64_t>() == 3; };
    auto first = submitted(PythonExecutor::primary(), three);
    auto second = submitted(PythonExecutor::probe(), three);
    return first.get() && second.get() && lockIsFreeOnBothQueues();
}

/// The function "f" that these lines define.
PythonObject function(const std::string &lines)
{
    const PythonObject names = Python().attr("dict")();
    Python().attr("exec")(lines, names);
    return names["f"];
}

}

/// The cases follow one another in one process, from before the interpreter's start.
class PythonExecutorTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void jobRunsWithoutALockBeforeTheStart();
    void bootstrapLeavesTheLockFree();
    void failedBootstrapLeavesTheLockFreeAndItsErrorReadable();
    void outcomeOfAJobIsHandedBackUnchanged();
    void jobInsideAJobKeepsTheLock();
    void jobsOfTheTwoQueuesShareTheInterpreterWithoutLoss();
    void closedConnectionIsAnErrorOfTheJob();
};

void PythonExecutorTest::jobRunsWithoutALockBeforeTheStart()
{
    QCOMPARE(PythonExecutor::withGIL([] { return 4; }), 4);
    QVERIFY_THROWS_EXCEPTION(
        std::range_error, PythonExecutor::withGIL([]() -> int { throw std::range_error("own"); }));
    PythonExecutor::releaseStartupThreadState();
    QVERIFY(!python_lock::interpreterRuns());
}

void PythonExecutorTest::bootstrapLeavesTheLockFree()
{
    bootstrap("sys");
    QVERIFY(python_lock::interpreterRuns());
    QVERIFY(bothQueuesWork());
}

void PythonExecutorTest::failedBootstrapLeavesTheLockFreeAndItsErrorReadable()
{
    try {
        bootstrap("no_such_module");
        QFAIL("nothing thrown");
    } catch (const PythonError &error) {
        // Outside the job, so neither reading nor dropping it may touch the interpreter.
        QCOMPARE(QString::fromStdString(error.message()),
                 QStringLiteral("No module named 'no_such_module'"));
        QCOMPARE(QString::fromUtf8(error.what()),
                 QStringLiteral("Python exception: No module named 'no_such_module'"));
    }
    QVERIFY(bothQueuesWork());
}

void PythonExecutorTest::outcomeOfAJobIsHandedBackUnchanged()
{
    const auto onProbe = [](auto body) {
        return PythonExecutor::probe().queue().sync(
            [&] { return PythonExecutor::runThrowing(body); });
    };
    QCOMPARE(onProbe([] { return PythonObject("a").attr("upper")().description(); }), "A");
    QCOMPARE(*onProbe([] { return std::make_unique<int>(5); }), 5);
    onProbe([] {});
    try {
        onProbe([] { throw std::range_error("own"); });
        QFAIL("nothing thrown");
    } catch (const std::range_error &error) {
        QCOMPARE(error.what(), "own");
    }
    QVERIFY(lockIsFreeOnBothQueues());
}

void PythonExecutorTest::jobInsideAJobKeepsTheLock()
{
    auto job = submitted(PythonExecutor::primary(), [] {
        std::string inner;
        try {
            PythonExecutor::withGIL([] { Python().attr("int").throwing().call({"x"}); });
        } catch (const PythonError &error) {
            // Still the same job, so the exception itself is there.
            inner = error.value().attr("__class__").attr("__name__").description();
        }
        PythonExecutor::releaseStartupThreadState();
        return python_lock::isHeld() ? inner : "lock lost";
    });
    QCOMPARE(QString::fromStdString(job.get()), QStringLiteral("ValueError"));
    QVERIFY(bothQueuesWork());
}

void PythonExecutorTest::jobsOfTheTwoQueuesShareTheInterpreterWithoutLoss()
{
    constexpr int jobs = 200;
    const auto count = [](const char *name) {
        return [name] {
            const PythonObject add = function("import sys\ndef f(name):\n for _ in range(50):\n"
                                              "  setattr(sys, name, getattr(sys, name, 0) + 1)");
            add(name);
        };
    };
    std::vector<std::future<void>> ends;
    for (int i = 0; i < jobs; ++i) {
        ends.push_back(submitted(PythonExecutor::primary(), count("veltro_first")));
        ends.push_back(submitted(PythonExecutor::probe(), count("veltro_second")));
    }
    for (auto &end : ends) {
        end.get();
    }
    const auto counted = submitted(PythonExecutor::probe(), [] {
                             const PythonObject sys = Python().import("sys");
                             return sys.attr("veltro_first").description() + " " +
                                    sys.attr("veltro_second").description();
                         }).get();
    QCOMPARE(QString::fromStdString(counted), QStringLiteral("10000 10000"));
}

void PythonExecutorTest::closedConnectionIsAnErrorOfTheJob()
{
    std::signal(SIGPIPE, SIG_DFL);
    const auto send = [] {
        const PythonObject write = function(R"(
import socket
def f():
    ours, theirs = socket.socketpair()
    theirs.close()
    try:
        ours.send(b'x')
    except OSError as error:
        return type(error).__name__
)");
        return write().description();
    };
    for (PythonExecutor *executor : {&PythonExecutor::primary(), &PythonExecutor::probe()}) {
        QCOMPARE(QString::fromStdString(submitted(*executor, send).get()),
                 QStringLiteral("BrokenPipeError"));
    }
}

QTEST_APPLESS_MAIN(PythonExecutorTest)
#include "tst_python_executor.moc"
