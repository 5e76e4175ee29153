// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/bridge/python_lock.h"

#include <atomic>
#include <dlfcn.h>

namespace veltro::python_lock {
namespace {

/// A function looked up in the whole process. Only an address is kept, never its absence: the
/// first jobs ask before the library has been loaded.
template <typename Function>
class ProcessFunction {
public:
    constexpr explicit ProcessFunction(const char *name) : m_name(name) {}

    Function *find()
    {
        void *address = m_address.load(std::memory_order_acquire);
        if (!address) {
            address = dlsym(RTLD_DEFAULT, m_name);
            m_address.store(address, std::memory_order_release);
        }
        return reinterpret_cast<Function *>(address);
    }

private:
    const char *const m_name;
    std::atomic<void *> m_address = nullptr;
};

constinit ProcessFunction<int()> isInitialized{"Py_IsInitialized"};
constinit ProcessFunction<int()> gilStateEnsure{"PyGILState_Ensure"};
constinit ProcessFunction<void(int)> gilStateRelease{"PyGILState_Release"};
constinit ProcessFunction<int()> gilStateCheck{"PyGILState_Check"};
constinit ProcessFunction<void *()> evalSaveThread{"PyEval_SaveThread"};

}

bool interpreterRuns()
{
    auto *function = isInitialized.find();
    return function && function() != 0;
}

int ensure()
{
    auto *function = gilStateEnsure.find();
    return function ? function() : 0;
}

void release(int state)
{
    if (auto *function = gilStateRelease.find()) {
        function(state);
    }
}

void saveThread()
{
    if (auto *function = evalSaveThread.find()) {
        function();
    }
}

bool isHeld()
{
    auto *function = gilStateCheck.find();
    return !function || function() != 0;
}

}
