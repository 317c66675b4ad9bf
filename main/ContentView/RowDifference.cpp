#include "ContentView/RowDifference.h"

#include <algorithm>
#include <numeric>
#include <string_view>
#include <unordered_map>

namespace brellin {

namespace {

struct Identity {
    const FileItem *item;

    bool operator==(const Identity &other) const { return item->sameEntry(*other.item); }
};
struct IdentityHash {
    std::size_t operator()(const Identity &identity) const
    {
        // Entries of one name in many folders are rare enough.
        return std::hash<std::string_view>()(identity.item->nameBytes);
    }
};

void append(std::vector<RowRange> &ranges, int row)
{
    if (!ranges.empty() && ranges.back().first + ranges.back().count == row)
        ++ranges.back().count;
    else
        ranges.push_back({row, 1});
}

class Comparison {
public:
    Comparison(const DisplayedItems &before, const DisplayedItems &after) : m_before(before), m_after(after) {}

    RowDifference result()
    {
        findCommonEnds();
        matchMiddle();
        collectRemoved();
        collectInserted();
        collectChanged();
        collectPlaces();
        return std::move(m_result);
    }

private:
    static std::size_t index(int row) { return static_cast<std::size_t>(row); }
    const FileItem &oldItem(int row) const { return m_before[index(row)]; }
    const FileItem &newItem(int row) const { return m_after[index(row)]; }
    int oldEnd() const { return static_cast<int>(m_before.size()) - m_tail; }
    int newEnd() const { return static_cast<int>(m_after.size()) - m_tail; }

    void findCommonEnds()
    {
        const int shorter = static_cast<int>(std::min(m_before.size(), m_after.size()));
        while (m_head < shorter && oldItem(m_head).sameEntry(newItem(m_head)))
            ++m_head;
        while (m_tail < shorter - m_head && oldItem(oldEnd() - 1).sameEntry(newItem(newEnd() - 1)))
            ++m_tail;
    }

    /// For each row of the new middle its old row, -1 where it is new.
    void matchMiddle()
    {
        std::unordered_map<Identity, int, IdentityHash> oldRows;
        for (int row = m_head; row < oldEnd(); ++row)
            oldRows.emplace(Identity{&oldItem(row)}, row);
        m_oldStays.assign(index(oldEnd() - m_head), false);
        for (int row = m_head; row < newEnd(); ++row) {
            const auto found = oldRows.find(Identity{&newItem(row)});
            m_oldRowOf.push_back(found == oldRows.end() ? -1 : found->second);
            if (found == oldRows.end())
                continue;
            m_oldStays[index(found->second - m_head)] = true;
            oldRows.erase(found); // an entry that is listed twice matches once
        }
    }

    void collectRemoved()
    {
        for (int row = m_head; row < oldEnd(); ++row) {
            if (!m_oldStays[index(row - m_head)])
                append(m_result.removed, row);
        }
        std::ranges::reverse(m_result.removed);
    }

    void collectInserted()
    {
        for (int row = m_head; row < newEnd(); ++row) {
            if (m_oldRowOf[index(row - m_head)] < 0)
                append(m_result.inserted, row);
        }
    }

    int oldRowOf(int row) const
    {
        if (row < m_head)
            return row;
        return row >= newEnd() ? row - newEnd() + oldEnd() : m_oldRowOf[index(row - m_head)];
    }

    void collectChanged()
    {
        for (int row = 0; row < static_cast<int>(m_after.size()); ++row) {
            if (const int old = oldRowOf(row); old >= 0 && !(oldItem(old) == newItem(row)))
                append(m_result.changed, row);
        }
    }

    void collectPlaces()
    {
        std::vector<int> stays; // old rows in the new order
        for (int row = 0; row < static_cast<int>(m_after.size()); ++row) {
            if (const int old = oldRowOf(row); old >= 0)
                stays.push_back(old);
        }
        m_result.reordered = !std::ranges::is_sorted(stays);
        if (!m_result.reordered)
            return;
        std::vector<int> byOldRow(stays.size());
        std::iota(byOldRow.begin(), byOldRow.end(), 0);
        std::ranges::sort(byOldRow, {}, [&stays](int place) { return stays[index(place)]; });
        m_result.places = std::move(byOldRow);
    }

    const DisplayedItems &m_before;
    const DisplayedItems &m_after;
    int m_head = 0; ///< so many rows are the same entries at the beginning
    int m_tail = 0; ///< and at the end
    std::vector<int> m_oldRowOf;
    std::vector<bool> m_oldStays;
    RowDifference m_result;
};

} // namespace

RowDifference difference(const DisplayedItems &before, const DisplayedItems &after)
{
    return before == after ? RowDifference() : Comparison(before, after).result();
}

} // namespace brellin
