// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "engine/bridge/python_object.h"

#include <exception>
#include <memory>
#include <optional>
#include <string>

namespace veltro {

/// An interpreter failure. Thrown by value; copies share what they hold, and the first text that
/// is asked for is kept.
class PythonError : public std::exception {
public:
    enum class Kind {
        exception,     ///< an interpreter exception was raised
        invalidCall,   ///< an object that cannot be called was called
        invalidModule, ///< an import found no module of that name
    };

    [[nodiscard]] static PythonError exception(const PythonObject &value,
                                               const std::optional<PythonObject> &traceback);
    [[nodiscard]] static PythonError invalidCall(const PythonObject &object);
    [[nodiscard]] static PythonError invalidModule(const std::string &name);

    [[nodiscard]] Kind kind() const;
    /// The exception, or the object that was called. REQUIRES: inside the job that threw, and of a
    /// kind that has an object.
    [[nodiscard]] const PythonObject &value() const;
    [[nodiscard]] const std::optional<PythonObject> &traceback() const;

    /// The str() of the exception alone, without a prefix; for the other kinds the description.
    /// Anywhere.
    [[nodiscard]] const std::string &message() const;
    /// The whole text, with the traceback where there is one. Inside the job; outside it, once the
    /// error has left the job through the runtime host.
    [[nodiscard]] const std::string &description() const;
    [[nodiscard]] const char *what() const noexcept override;

    /// Keeps the texts and drops the objects; value() and traceback() end here. The runtime host
    /// calls it, with the lock held, for an error that leaves its job.
    void leaveJob() const noexcept;

private:
    struct State;
    explicit PythonError(std::shared_ptr<State> state);

    std::shared_ptr<State> m_state;
};

/// Whether an interpreter error waits to be taken. It never does between operations of the bridge.
[[nodiscard]] bool pythonErrorPending();

}
