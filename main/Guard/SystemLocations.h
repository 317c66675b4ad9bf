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

/// Folders that belong to the system, besides the Library in the user's home folder.
struct SystemFolders {
    std::vector<Location> refused;
    std::vector<Location> allowed; ///< exceptions below the refused folders
    bool dotFoldersInHome = false; ///< refuse "~/.…", where programs keep their own data

    static SystemFolders ofThisSystem();
};

/// Where the agent never reads, moves or writes: system folders, the user's Library (except its cloud folder) and, on
/// Linux, everything whose first component below the home folder begins with a dot. A home folder inside a system
/// folder ("/var/home/anna") is allowed unless it is itself a system folder. System folders that are also mounted
/// elsewhere are recognised by device and inode.
class SystemLocations {
public:
    /// The message with which every operation refuses.
    static QString message();

    /// For this system and this home folder. Resolves the home folder and the system folders once, here.
    explicit SystemLocations(const Location &home);
    /// Uses these folders instead of the system's.
    SystemLocations(const Location &home, const std::vector<Location> &refused);
    SystemLocations(const Location &home, const SystemFolders &system);

    /// Whether the agent may work in a folder, as a source of rules or as a target. Both the standardised path and the
    /// fully resolved one (for a missing entry: of its deepest existing parent) must lie outside the refused places.
    /// Refuses relative paths and paths through a dangling symlink. Reads the disk without changing access times;
    /// thread-safe.
    bool isAllowed(const Location &location) const;

    /// Whether the agent may move, copy, rename, trash or create this entry. As above, but a symlink in the last
    /// component is not followed, since the link itself is moved. Also refuses a folder that contains a refused place
    /// (the home folder with its Library).
    bool isAllowedEntry(const Location &location) const;

    /// A folder whose own identity and those of the folders above it were looked up once, for the many entries in it.
    struct Examined {
        std::string real; ///< its resolved path
        bool allowed = false;
        bool allAllowed = false; ///< whatever lies in it, as no place that is refused or excepted does
    };
    /// Examines a folder by its resolved path. The answer holds while the path leads to the same folders: whoever keeps
    /// it must notice when one of them is moved or replaced.
    Examined examined(std::string realFolder) const;
    /// Like `isAllowedEntry` for an entry at a standardised path in an examined folder. The entry must not be a folder,
    /// which could be a system folder itself. Does not read the disk.
    bool isAllowedFileIn(const Examined &folder, const Location &standardised) const;

    /// The check by text only: takes a standardised path and does not read the disk.
    bool isAllowedText(std::string_view standardised) const;
    bool isAllowedText(const Location &standardised) const
    {
        return isAllowedText(std::string_view(standardised.native()));
    }

    /// Whether a walk may enter a folder that it meets at a standardised path: neither the text nor the folder itself is
    /// refused. Reads the disk only if the folder has the number of a system folder.
    bool mayEnter(std::string_view standardised, const FileIdentity &folder) const;

    /// The home folder as passed in, unresolved.
    const Location &home() const { return m_home; }

private:
    enum class Verdict { Refused, Allowed };
    struct Place {
        std::string folder;
        Verdict verdict = Verdict::Refused;
        bool ignoresCase = false; ///< the volume is case-insensitive: "/USR" is "/usr"
        QString foldedFolder;     ///< set only if ignoresCase
    };
    class Tested;
    /// A folder as it was when its identity was read.
    struct Known {
        std::string folder;
        Verdict verdict = Verdict::Refused;
    };

    void addHome(const Location &home);
    void add(const Location &folder, Verdict verdict);
    void addRefusedAsResolved(const Location &folder);
    bool holdsRefused(std::string_view standardised) const;
    bool isAllAllowedIn(const std::string &folder) const;
    std::optional<std::string> allowedByText(const std::string &path, const std::string &realFolder) const;
    void identify(const std::string &folder, Verdict verdict);
    void identifyDotFolders();
    std::optional<Verdict> verdictOn(const FileIdentity &folder) const;
    bool isAllowedByIdentity(const std::string &real) const;
    bool isWayUpAllowed(std::string real) const;

    Location m_home;
    std::vector<Place> m_homes; ///< as named and as resolved
    /// The deepest place containing a location decides; at equal depth, the refusal.
    std::vector<Place> m_places;
    std::map<FileIdentity, Known> m_known; ///< existing places and dot folders
    std::optional<FileIdentity> m_root;    ///< of "/"
    bool m_dotFoldersInHome = false;
};

/// The path with every symlink resolved; missing components are appended unchanged. nullopt for a relative path, a path
/// through a dangling symlink, and if the system cannot tell.
std::optional<Location> resolvedLocation(const Location &location);

} // namespace brellin
