#pragma once

#include "Base/Location.h"
#include "ContentView/ItemOrder.h"
#include "ContentView/ViewMode.h"
#include "System/UserDefaults.h"

#include <optional>

namespace brellin {

struct StoredKind;

/// View settings of a folder.
struct FolderView {
    ViewMode mode = ViewMode::Details;
    double iconSize = 72.0; ///< in points

    bool operator==(const FolderView &) const = default;
};

/// How a folder's entries are sorted and grouped.
struct Arrangement {
    SortOrder order{SortComparator{}};
    GroupKey group = GroupKey::None;

    bool operator==(const Arrangement &) const = default;
};

/// Limits an icon size to 40 to 256 points.
double validIconSize(double size);

/// The stored view of the folder, otherwise the view last used anywhere. If the stored entry has no valid size, uses
/// `iconSize`.
FolderView rememberedView(const UserDefaults &defaults, const Location &folder, double iconSize);

StoredKind folderViewsKind();

/// Stores the view for the folder and as the one last used. At most 500 folders are kept; beyond that an arbitrary
/// other one is dropped.
Result<void> rememberView(UserDefaults &defaults, const Location &folder, const FolderView &view);

/// The arrangement stored for the folder; none if there is none or it cannot be understood.
std::optional<Arrangement> rememberedArrangement(const UserDefaults &defaults, const Location &folder);

StoredKind folderArrangementsKind();

/// As `rememberView`.
Result<void> rememberArrangement(UserDefaults &defaults, const Location &folder, const Arrangement &arrangement);

} // namespace brellin
