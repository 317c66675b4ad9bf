#pragma once

#include <string>
#include <vector>

namespace brellin {

/// A minimal environment for tools: paths, language and the session bus. Other variables can change what a tool does,
/// even make it delete what it packs (`ZIPOPT=-m`).
std::vector<std::string> toolEnvironment();

/// The user's environment, for programs opened for the user.
std::vector<std::string> userEnvironment();

/// Finds a program in the `PATH` of an environment; a name with a slash is a path already. Empty if not found. Ignores
/// relative folders in `PATH`.
std::string programIn(const std::vector<std::string> &environment, const std::string &program);

} // namespace brellin
