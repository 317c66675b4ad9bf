#pragma once

#include <string>
#include <vector>

namespace brellin {

/// The environment of the tools that this program runs: where things are, the user's language and the session's bus. Much
/// else in the user's own changes what a tool does, up to removing what it packs (`ZIPOPT=-m`).
std::vector<std::string> toolEnvironment();

/// The user's own, for what is opened for them.
std::vector<std::string> userEnvironment();

/// Where `PATH` of an environment finds a program; a name with a slash is its path. Empty where there is none. Folders that
/// depend on where the program is started are passed over.
std::string programIn(const std::vector<std::string> &environment, const std::string &program);

} // namespace brellin
