#pragma once

#include <optional>
#include <string>

namespace brellin {

/// The absolute path, free of links, of an entry that exists (a link at its end is followed). Neither opens the entry nor
/// touches its access time. 0, or the system's error number: ELOOP also for a link that leads nowhere, which for the
/// system is just something that does not exist.
int realPath(const std::string &path, std::string &real);

/// The same of a folder that is open. Nothing where the system does not tell, or where the folder is gone.
std::optional<std::string> realPathOf(int openFolder);

} // namespace brellin
