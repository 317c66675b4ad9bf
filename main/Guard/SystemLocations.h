#pragma once

#include "Base/Location.h"
#include "Disk/FileAttributes.h"

#include <QString>

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brellin {

/// What a system keeps for itself, besides the Library in the user's home folder.
struct SystemFolders {
    std::vector<Location> refused;
    std::vector<Location> allowed; ///< exceptions below the refused ones
    bool dotFoldersInHome = false; ///< the user's programs keep their own things in "~/.…"

    static SystemFolders ofThisSystem();
};

/// Where the agent never reads, moves or writes: the system's folders, the user's Library (its cloud folder excepted) and,
/// on Linux, everything whose first name below the home folder begins with a dot. The home folder may lie inside a system
/// folder ("/var/home/anna"): it is the user's nevertheless, unless it is one of the system's folders itself. A system folder
/// that is mounted elsewhere as well is known by its device and inode.
class SystemLocations {
public:
    /// The refusal text of every operation.
    static QString message();

    /// For this system and this home folder. What the home folder and the system's folders resolve to is found out here,
    /// once.
    explicit SystemLocations(const Location &home);
    /// With these folders in place of the system's.
    SystemLocations(const Location &home, const std::vector<Location> &refused);
    SystemLocations(const Location &home, const SystemFolders &system);

    /// Whether the agent may work in a folder: one that rules look into, or one that entries are put into. Both its
    /// standardised path and the path with every link resolved (of what does not exist: of its deepest existing parent)
    /// must lie outside the refused places. Relative paths and paths through a link to nowhere are refused. Looks at the
    /// disk, without changing access times; callable from every thread.
    bool isAllowed(const Location &location) const;

    /// Whether the agent may move, copy, rename or trash this entry, or make one of this name. As above, but a link in the
    /// last component is not followed: it is the link itself that moves. A folder that holds a refused place (the home
    /// folder with its Library) is refused as well.
    bool isAllowedEntry(const Location &location) const;
    /// The same for an entry at a standardised path whose folder is known to lie at `realFolder`.
    bool isAllowedEntryIn(const std::string &realFolder, const Location &standardised) const;

    /// The first rule from the text of a standardised path alone, without looking at the disk.
    bool isAllowedText(std::string_view standardised) const;
    bool isAllowedText(const Location &standardised) const
    {
        return isAllowedText(std::string_view(standardised.native()));
    }

    /// Whether a folder is one of the refused ones, whatever its path: for walks, which see every folder on the way.
    bool isRefusedFolder(const FileIdentity &folder) const;

    /// The home folder as it was named.
    const Location &home() const { return m_home; }

private:
    enum class Verdict { Refused, Allowed };
    struct Place {
        std::string folder;
        Verdict verdict = Verdict::Refused;
        bool ignoresCase = false; ///< its disk takes "/USR" for "/usr"
        QString foldedFolder;     ///< only where case is ignored
    };
    class Tested;
    /// A folder as it was when it was looked at.
    struct Known {
        std::string folder;
        Verdict verdict = Verdict::Refused;
    };

    void addHome(const Location &home);
    void add(const Location &folder, Verdict verdict);
    void addRefusedAsResolved(const Location &folder);
    bool holdsRefused(std::string_view standardised) const;
    bool isAllowedAsResolved(const std::string &path, const std::string &realFolder) const;
    void identify(const std::string &folder, Verdict verdict);
    void identifyDotFolders();
    std::optional<Verdict> verdictOn(const FileIdentity &folder) const;
    bool isAllowedByIdentity(std::string real) const;

    Location m_home;
    std::vector<Place> m_homes; ///< as named and as resolved
    /// The deepest place that holds a location decides; of two equal ones the refusal.
    std::vector<Place> m_places;
    std::map<FileIdentity, Known> m_known; ///< of the places and the dot folders those that are there
    bool m_dotFoldersInHome = false;
};

/// The path with every link resolved; what does not exist of it is taken as it stands. Nothing for a relative path, for one
/// through a link that leads nowhere, and where the system does not tell.
std::optional<Location> resolvedLocation(const Location &location);

} // namespace brellin
