#pragma once

#include "ContentView/FileItems.h"

#include <QDate>

#include <cstdint>
#include <map>
#include <vector>

namespace brellin {

/// What the files of a list are grouped by. Folders are a group of their own, which always comes first.
enum class GroupKey { None, Kind, Modified, Size, Tags };

/// Consecutive rows under one heading, up to the next group.
struct RowGroup {
    std::uint32_t first = 0; ///< row
    QString title;           ///< "Letzte 7 Tage"

    bool operator==(const RowGroup &) const = default;
};

/// Assigns each entry to a group.
struct ItemGroups {
    std::vector<std::uint64_t>
        places; ///< the group of each entry; the natural order of groups is that of these numbers
    std::map<std::uint64_t, QString> titles; ///< by place
};

/// Kinds by name, the newest dates and the largest sizes first, tags in the order of the palette. An entry with several
/// tags belongs to the first of them.
ItemGroups groupsOf(const FileItems &items, GroupKey key, QDate today);

} // namespace brellin
