// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <stdexcept>
#include <string>

namespace veltro {

/// Why the store could not be opened, read or written.
class StoreError : public std::runtime_error {
public:
    enum class Kind {
        damaged,  ///< SQLite calls the file corrupt, or no database
        readOnly, ///< the file or its folder
        full,     ///< the disk
        locked,   ///< another process has it for longer than we wait
        newer,    ///< written by a later version of the program
        foreign,  ///< a database of something else
        other,
    };

    StoreError(Kind kind, const std::string &detail)
        : std::runtime_error(description(kind) + ": " + detail), m_kind(kind)
    {}

    [[nodiscard]] Kind kind() const { return m_kind; }

private:
    static std::string description(Kind kind)
    {
        switch (kind) {
        case Kind::damaged:
            return "the library's file is damaged";
        case Kind::readOnly:
            return "the library cannot be written to";
        case Kind::full:
            return "the disk is full";
        case Kind::locked:
            return "the library is in use by another program";
        case Kind::newer:
            return "the library was written by a newer version";
        case Kind::foreign:
            return "the library's file belongs to something else";
        case Kind::other:
            break;
        }
        return "the library failed";
    }

    Kind m_kind;
};

}
