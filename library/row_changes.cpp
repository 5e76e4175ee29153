// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/row_changes.h"

namespace veltro {
namespace {

/// Walks both lists from the top, and collects runs of rows that the same has happened to.
class RowComparison {
public:
    RowComparison(const LibraryRows &from, const LibraryRows &to) : m_from(from), m_to(to) {}

    [[nodiscard]] bool isAtEnd() const { return m_old == m_from.size() && m_new == m_to.size(); }

    /// One run of rows that stay, go, come or are replaced.
    void takeRun(std::vector<RowChange> &changes)
    {
        if (const std::size_t gone = runOf([this] { return oldIsGone(); }, m_old); gone > 0) {
            changes.push_back({RowChange::Kind::remove, m_place, gone, {}});
        } else if (const std::size_t come = runOf([this] { return newHasCome(); }, m_new);
                   come > 0) {
            addNew(changes, RowChange::Kind::insert, come);
        } else if (const std::size_t other = runOfBoth([this] { return isReplaced(); });
                   other > 0) {
            addNew(changes, RowChange::Kind::replace, other);
        } else {
            m_place += runOfBoth([this] { return isKept(); });
        }
    }

private:
    [[nodiscard]] bool hasOld() const { return m_old < m_from.size(); }
    [[nodiscard]] bool hasNew() const { return m_new < m_to.size(); }
    [[nodiscard]] bool oldIsGone() const
    {
        return hasOld() && (!hasNew() || m_from[m_old]->precedes(*m_to[m_new]));
    }
    [[nodiscard]] bool newHasCome() const
    {
        return hasNew() && (!hasOld() || m_to[m_new]->precedes(*m_from[m_old]));
    }
    [[nodiscard]] bool isKept() const
    {
        return hasOld() && hasNew() && m_from[m_old] == m_to[m_new];
    }
    [[nodiscard]] bool isReplaced() const
    {
        return hasOld() && hasNew() && !isKept() && m_from[m_old]->hasPlaceOf(*m_to[m_new]);
    }

    template <typename Condition>
    std::size_t runOf(Condition holds, std::size_t &position)
    {
        const std::size_t begin = position;
        while (holds()) {
            ++position;
        }
        return position - begin;
    }
    template <typename Condition>
    std::size_t runOfBoth(Condition holds)
    {
        const std::size_t begin = m_new;
        while (holds()) {
            ++m_old;
            ++m_new;
        }
        return m_new - begin;
    }

    /// The rows just walked over in the new list.
    void addNew(std::vector<RowChange> &changes, RowChange::Kind kind, std::size_t count)
    {
        const auto end = m_to.begin() + static_cast<std::ptrdiff_t>(m_new);
        changes.push_back(
            {kind, m_place, count, LibraryRows(end - static_cast<std::ptrdiff_t>(count), end)});
        m_place += count;
    }

    const LibraryRows &m_from;
    const LibraryRows &m_to;
    std::size_t m_old = 0;
    std::size_t m_new = 0;
    std::size_t m_place = 0; // in the list between the two
};

}

std::optional<std::vector<RowChange>> rowChanges(const LibraryRows &from, const LibraryRows &to,
                                                 std::size_t most)
{
    std::vector<RowChange> changes;
    RowComparison comparison(from, to);
    while (!comparison.isAtEnd()) {
        comparison.takeRun(changes);
        if (changes.size() > most) {
            return std::nullopt;
        }
    }
    return changes;
}

void applyChange(const RowChange &change, LibraryRows &rows)
{
    const auto first = rows.begin() + static_cast<std::ptrdiff_t>(change.first);
    const auto end = first + static_cast<std::ptrdiff_t>(
                                 change.kind == RowChange::Kind::insert ? 0 : change.count);
    switch (change.kind) {
    case RowChange::Kind::insert:
        rows.insert(first, change.rows.begin(), change.rows.end());
        break;
    case RowChange::Kind::remove:
        rows.erase(first, end);
        break;
    case RowChange::Kind::replace:
        std::copy(change.rows.begin(), change.rows.end(), first);
        break;
    }
}

}
