// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "coordination/completion.h"
#include "coordination/detach.h"
#include "platform/log.h"

#include <QTest>

#include <stdexcept>

using namespace veltro;

namespace {

using Shared = std::shared_ptr<Completion>;

QCoro::Task<void> noteAfter(Shared before, Shared own, std::vector<int> *notes, int note)
{
    co_await before->wait();
    notes->push_back(note);
    own->finish();
}

QCoro::Task<void> failAfter(Shared before)
{
    co_await before->wait();
    throw std::runtime_error("the disk is full");
}

}

class TestCompletion : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void whoeverWaitsGoesOnInALaterTurn();
    void aLongChainNeedsNoStack();
    void anErrorThatNobodyWaitsForIsLogged();
};

void TestCompletion::whoeverWaitsGoesOnInALaterTurn()
{
    const auto first = std::make_shared<Completion>();
    std::vector<int> notes;
    noteAfter(first, std::make_shared<Completion>(), &notes, 1);
    noteAfter(first, std::make_shared<Completion>(), &notes, 2);
    noteAfter(Completion::finished(), std::make_shared<Completion>(), &notes, 0);
    QVERIFY(notes.empty());
    first->finish();
    QVERIFY(notes.empty());
    QTRY_COMPARE(notes.size(), std::size_t(3));
    QCOMPARE(notes, (std::vector{0, 1, 2}));
}

void TestCompletion::aLongChainNeedsNoStack()
{
    constexpr int length = 100'000;
    const auto first = std::make_shared<Completion>();
    std::vector<int> notes;
    Shared tail = first;
    for (int index = 0; index < length; ++index) {
        const auto own = std::make_shared<Completion>();
        noteAfter(tail, own, &notes, index);
        tail = own;
    }
    first->finish();
    QTRY_VERIFY(tail->isFinished());
    QCOMPARE(notes.size(), std::size_t(length));
    QVERIFY(std::is_sorted(notes.begin(), notes.end()));
}

void TestCompletion::anErrorThatNobodyWaitsForIsLogged()
{
    std::vector<std::string> lines;
    setLogSink([&lines](std::string_view line) { lines.emplace_back(line); });
    const auto end = std::make_shared<Completion>();
    detach(failAfter(end), QStringLiteral("the batch"));
    QVERIFY(lines.empty());
    end->finish();
    QTRY_COMPARE(lines.size(), std::size_t(1));
    setLogSink({});
    QVERIFY(lines.front().find("the batch failed: the disk is full") != std::string::npos);
}

QTEST_GUILESS_MAIN(TestCompletion)
#include "tst_completion.moc"
