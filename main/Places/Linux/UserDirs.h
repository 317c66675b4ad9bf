#pragma once

#include "Base/Location.h"

#include <optional>
#include <string>
#include <string_view>

namespace brellin {

/// The user's folders by purpose, as user-dirs.dirs in a configuration folder assigns them.
class UserDirs {
public:
    /// An unreadable file assigns nothing.
    UserDirs(const Location &configuration, Location home);

    /// The folder of a key, e.g. "XDG_MUSIC_DIR"; none if it is not assigned, or to the home folder, which means "none".
    std::optional<Location> folder(std::string_view key) const;

private:
    const std::string m_text;
    const Location m_home;
};

/// The user's configuration folder.
Location configurationFolder(const Location &home);

} // namespace brellin
