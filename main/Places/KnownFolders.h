#pragma once

#include "Base/Location.h"

#include <QString>

#include <array>
#include <optional>

namespace brellin {

/// The standard folders of every account.
enum class StandardFolder { Desktop, Documents, Downloads, Movies, Music, Pictures };

/// The user's folders by purpose. Determined once, then constant.
class KnownFolders {
public:
    /// For the current account: from HOME and, on Linux, user-dirs.dirs in the configuration folder. An entry that is
    /// missing or names the home folder itself is replaced by its default name below the home folder.
    static KnownFolders ofThisUser();

    Location home;
    /// The optional folders are set only if they exist on this machine.
    std::optional<Location> applications;
    std::optional<Location> iCloud;
    std::optional<Location> eigeneDateien; ///< "Eigene Dateien" in the cloud folder
    Location trash;                        ///< contains the trashed entries of the home volume

    /// The path of a standard folder, which need not exist.
    const Location &dir(StandardFolder which) const;
    /// The display name of a folder: "iCloud Drive", "Papierkorb", otherwise its own name.
    QString title(const Location &folder) const;

private:
    /// What differs between systems.
    struct AccountFolders {
        Location home;
        std::array<Location, 6> standard; ///< in the order of `StandardFolder`
        Location trash;
    };
    static AccountFolders accountFolders();

    std::array<Location, 6> m_standard;
};

} // namespace brellin
