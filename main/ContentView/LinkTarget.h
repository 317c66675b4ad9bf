#pragma once

#include "ContentView/FileItem.h"
#include "Disk/FileAttributes.h"

namespace brellin {

/// What a symbolic link leads to. A target on a network mount is not asked, it may not answer for minutes: such a link
/// counts as leading to a folder unless its target's name has an extension.
LinkState linkTarget(const Location &link, FileAttributes &target);

} // namespace brellin
