#pragma once

#include <string>

namespace brellin {

/// The absolute path, free of links, of an entry that exists (a link at its end is followed). Neither opens the entry nor
/// touches its access time. 0, or the system's error number.
int realPath(const char *path, std::string &real);

} // namespace brellin
