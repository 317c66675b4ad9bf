#pragma once

#include "Base/Location.h"

#include <QString>

#include <array>
#include <optional>

namespace brellin {

/// A folder that every account has.
enum class StandardFolder { Desktop, Documents, Downloads, Movies, Music, Pictures };

/// The user's folders by their role. Found once, then constant.
class KnownFolders {
public:
    /// For the account the program runs in: HOME and, on Linux, user-dirs.dirs of the configuration folder (an entry that
    /// is missing or is the home folder itself means home + its usual name).
    static KnownFolders ofThisUser();

    Location home;
    /// Of the folders below, those that are optional exist on this machine.
    std::optional<Location> applications;
    std::optional<Location> iCloud;
    std::optional<Location> eigeneDateien; ///< "Eigene Dateien" in the cloud folder
    Location trash;                        ///< the folder that holds the trashed entries of the home volume

    /// A standard folder; it need not exist.
    const Location &dir(StandardFolder which) const;
    /// How a folder is called on the screen: "iCloud Drive", "Papierkorb", else its name.
    QString title(const Location &folder) const;

private:
    /// What each system keeps in its own way.
    struct AccountFolders {
        Location home;
        std::array<Location, 6> standard; ///< in the order of `StandardFolder`
        Location trash;
    };
    static AccountFolders accountFolders();

    std::array<Location, 6> m_standard;
};

} // namespace brellin
