// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace veltro::fuzz {

using Bytes = std::vector<std::uint8_t>;
using Words = std::vector<std::string>;

/// Numbers that look random and come again in the same order from the same beginning.
class Chance {
public:
    explicit Chance(std::uint64_t beginning) : m_state(beginning) {}
    [[nodiscard]] std::uint64_t number();
    /// A number from 0 to below a limit, which is at least 1.
    [[nodiscard]] std::size_t below(std::size_t limit);
    [[nodiscard]] bool oneIn(std::size_t count) { return below(count) == 0; }

private:
    std::uint64_t m_state;
};

/// Changes a file at a few places, its first part more often than the rest: bits, numbers at the
/// ends of their range, pieces that are missing, come twice or come from another file.
void mutate(Bytes &file, const Bytes &other, Chance &chance);

/// Changes a command line at a few places: words that are missing, come twice, change places or
/// come from a pool, and letters.
void mutate(Words &command, const Words &pool, Chance &chance);

}
