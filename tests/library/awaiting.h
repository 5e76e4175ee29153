// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QCoro/QCoroTask>
#include <QTest>

#include <exception>
#include <memory>
#include <optional>
#include <stdexcept>
#include <type_traits>
#include <utility>
#include <variant>

namespace veltro::test {

template <typename Value>
struct Outcome {
    std::optional<std::conditional_t<std::is_void_v<Value>, std::monostate, Value>> value;
    std::exception_ptr error;
};

template <typename Value>
QCoro::Task<void> settle(std::shared_ptr<Outcome<Value>> outcome, QCoro::Task<Value> task)
{
    QCoro::Task<Value> own = std::move(task);
    try {
        if constexpr (std::is_void_v<Value>) {
            co_await own;
            outcome->value.emplace();
        } else {
            outcome->value = co_await own;
        }
    } catch (...) {
        outcome->error = std::current_exception();
    }
}

/// Waits, with the event loop alive, for what a task yields, or throws what it throws; QCoro's own
/// way to wait never ends when the task throws.
template <typename Value>
Value await(QCoro::Task<Value> task)
{
    auto outcome = std::make_shared<Outcome<Value>>();
    const auto waiting = settle(outcome, std::move(task));
    constexpr int longest = 60'000; // ms, for what takes a second
    if (!QTest::qWaitFor([&outcome] { return outcome->value || outcome->error; }, longest)) {
        throw std::runtime_error("the task does not end");
    }
    if (outcome->error) {
        std::rethrow_exception(outcome->error);
    }
    if constexpr (!std::is_void_v<Value>) {
        return *std::move(outcome->value);
    }
}

}
