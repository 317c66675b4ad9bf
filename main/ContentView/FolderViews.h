#pragma once

#include "Base/Location.h"
#include "ContentView/ViewMode.h"
#include "System/UserDefaults.h"

#include <optional>

namespace brellin {

struct StoredKind;

/// How a folder is shown.
struct FolderView {
    ViewMode mode = ViewMode::Details;
    double iconSize = 72.0; ///< points

    bool operator==(const FolderView &) const = default;
};

/// Icon sizes end here, whatever is asked for or stored.
double validIconSize(double size);

/// The view of a folder as it was last: its own, else the one last used anywhere. Where the stored entry has no size that can
/// be read, `iconSize` stays.
FolderView rememberedView(const UserDefaults &defaults, const Location &folder, double iconSize);

StoredKind folderViewsKind();

/// Remembers it for the folder and as the one last used. At most 500 folders are kept; an older entry goes for a new one.
Result<void> rememberView(UserDefaults &defaults, const Location &folder, const FolderView &view);

} // namespace brellin
