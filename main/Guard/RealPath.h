#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace brellin {

/// Resolves an existing entry to an absolute path without symlinks (a final symlink is followed). Neither opens the
/// entry nor changes its access time. Returns 0 or an errno value; a dangling symlink gives ELOOP, not ENOENT, so that
/// callers can tell it from a missing entry.
int realPath(const std::string &path, std::string &real);

/// The same for an open folder. nullopt if the system cannot tell or the folder has been removed.
std::optional<std::string> realPathOf(int openFolder);

/// Whether an open folder still has the path that `realPathOf` returned earlier. False if it was removed, or if it or a
/// folder above it was moved. One system call.
bool isOpenAt(int openFolder, std::string_view real);

} // namespace brellin
