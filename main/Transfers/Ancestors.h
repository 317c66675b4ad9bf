#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/FileAttributes.h"

#include <vector>

namespace brellin {

/// A folder and those above it up to the root, by device and inode: a path could name them in another way, through a link or
/// a second mount.
Result<std::vector<FileIdentity>> selfAndAncestors(const Location &folder);

/// Whether an existing entry must stay where it is while `src` goes into `folder`: it is the source, the folder, or holds one
/// of them, itself or as the link that leads there. Doubt answers true.
bool mustStay(const Location &existing, const Location &src, const Location &folder);

} // namespace brellin
