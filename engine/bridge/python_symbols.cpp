// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/bridge/python_symbols.h"

#include "engine/bridge/python_library.h"
#include "engine/bridge/stop_process.h"

#include <string>

namespace veltro::capi {

void *Symbol::find()
{
    if (void *address = m_address.load(std::memory_order_acquire)) {
        return address;
    }
    std::call_once(m_once, [this] {
        const bool legacy = m_legacyName && PythonLibrary::isLegacy();
        m_address = PythonLibrary::symbol(legacy ? m_legacyName : m_name);
    });
    return m_address;
}

void *Symbol::require()
{
    void *address = find();
    if (!address) {
        stopProcess(std::string("The Python library lacks '") + m_name + "'.");
    }
    return address;
}

}
