// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/bridge/python_error.h"

#include "engine/bridge/python_calls.h"
#include "engine/bridge/python_conversions.h"
#include "engine/bridge/python_symbols.h"
#include "engine/bridge/python_views.h"

#include <utility>

namespace veltro {
namespace {

/// The traceback as the interpreter prints it; nothing when it cannot be told.
std::optional<std::string> formatted(const PythonObject &traceback)
{
    const auto module = calls::takeOrNothing(capi::PyImport_ImportModule("traceback"));
    const auto format = module ? module->checking().attr("format_tb") : std::nullopt;
    const auto lines = format ? format->checking().call({traceback}) : std::nullopt;
    const auto join = PythonObject("").checking().attr("join");
    const auto text = lines && join ? join->checking().call({*lines}) : std::nullopt;
    return text ? std::optional(text->description()) : std::nullopt;
}

}

struct PythonError::State {
    Kind kind;
    std::optional<PythonObject> value;
    std::optional<PythonObject> traceback;
    std::string message;
    std::optional<std::string> description; // made when it is first asked for
};

PythonError::PythonError(std::shared_ptr<State> state) : m_state(std::move(state)) {}

PythonError PythonError::exception(const PythonObject &value,
                                   const std::optional<PythonObject> &traceback)
{
    return PythonError(std::make_shared<State>(
        State{Kind::exception, value, traceback, value.description(), std::nullopt}));
}

PythonError PythonError::invalidCall(const PythonObject &object)
{
    const std::string text = "Invalid Python call: " + object.description();
    return PythonError(
        std::make_shared<State>(State{Kind::invalidCall, object, std::nullopt, text, text}));
}

PythonError PythonError::invalidModule(const std::string &name)
{
    const std::string text = "Invalid Python module: " + name;
    return PythonError(std::make_shared<State>(
        State{Kind::invalidModule, std::nullopt, std::nullopt, text, text}));
}

PythonError::Kind PythonError::kind() const
{
    return m_state->kind;
}

const PythonObject &PythonError::value() const
{
    return m_state->value.value();
}

const std::optional<PythonObject> &PythonError::traceback() const
{
    return m_state->traceback;
}

const std::string &PythonError::message() const
{
    return m_state->message;
}

const std::string &PythonError::description() const
{
    if (!m_state->description) {
        std::string text = "Python exception: " + m_state->message;
        const auto lines = m_state->traceback ? formatted(*m_state->traceback) : std::nullopt;
        if (lines) {
            text += "\nTraceback:\n" + *lines;
        }
        m_state->description = std::move(text);
    }
    return *m_state->description;
}

const char *PythonError::what() const noexcept
{
    try {
        return description().c_str();
    } catch (...) {
        return m_state->message.c_str(); // no memory for the longer text
    }
}

void PythonError::leaveJob() const noexcept
{
    static_cast<void>(what());
    m_state->value.reset();
    m_state->traceback.reset();
}

bool pythonErrorPending()
{
    return capi::PyErr_Occurred() != nullptr;
}

}
