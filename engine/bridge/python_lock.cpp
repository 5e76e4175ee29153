// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/bridge/python_lock.h"

#include <atomic>
#include <dlfcn.h>

#ifdef __SANITIZE_THREAD__
#include <sanitizer/tsan_interface.h>
#endif

namespace veltro::python_lock {
namespace {

// The interpreter was not built with the thread sanitizer, which therefore has to be told what
// order the lock makes: what its last holder did comes before what the next one does.
#ifdef __SANITIZE_THREAD__
char lockOrder;
void wasTaken()
{
    __tsan_acquire(&lockOrder);
}
void isGivenUp()
{
    __tsan_release(&lockOrder);
}
#else
void wasTaken() {}
void isGivenUp() {}
#endif

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
    if (!function) {
        return 0;
    }
    const int state = function();
    wasTaken();
    return state;
}

void release(int state)
{
    if (auto *function = gilStateRelease.find()) {
        isGivenUp();
        function(state);
    }
}

void saveThread()
{
    if (auto *function = evalSaveThread.find()) {
        isGivenUp();
        function();
    }
}

bool isHeld()
{
    auto *function = gilStateCheck.find();
    return !function || function() != 0;
}

}
