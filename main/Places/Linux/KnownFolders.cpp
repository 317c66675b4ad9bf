#include "Places/KnownFolders.h"

#include "Places/Linux/UserDirs.h"

#include <cstdlib>
#include <utility>
#include <vector>

#include <pwd.h>
#include <unistd.h>

namespace brellin {

namespace {

struct StandardName {
    const char *key;   ///< key in user-dirs.dirs
    const char *usual; ///< default name below the home folder
};

/// In the order of `StandardFolder`.
constexpr std::array<StandardName, 6> standardNames{{{"XDG_DESKTOP_DIR", "Desktop"},
                                                     {"XDG_DOCUMENTS_DIR", "Documents"},
                                                     {"XDG_DOWNLOAD_DIR", "Downloads"},
                                                     {"XDG_VIDEOS_DIR", "Videos"},
                                                     {"XDG_MUSIC_DIR", "Music"},
                                                     {"XDG_PICTURES_DIR", "Pictures"}}};

/// An absolute path from the environment; relative ones count as unset, as XDG demands.
std::optional<Location> environmentPath(const char *name)
{
    const char *const value = std::getenv(name);
    if (value == nullptr || *value != '/')
        return std::nullopt;
    return standardised(value);
}

Location homeFolder()
{
    if (std::optional<Location> home = environmentPath("HOME"))
        return *std::move(home);
    passwd entry{};
    passwd *found = nullptr;
    std::vector<char> texts(16384);
    if (::getpwuid_r(::getuid(), &entry, texts.data(), texts.size(), &found) == 0 && found != nullptr &&
        entry.pw_dir != nullptr && *entry.pw_dir == '/')
        return standardised(entry.pw_dir);
    return "/";
}

} // namespace

KnownFolders::AccountFolders KnownFolders::accountFolders()
{
    AccountFolders folders;
    folders.home = homeFolder();
    const UserDirs assigned(configurationFolder(folders.home), folders.home);
    for (std::size_t i = 0; i < standardNames.size(); ++i)
        folders.standard.at(i) =
            assigned.folder(standardNames.at(i).key).value_or(folders.home / standardNames.at(i).usual);
    folders.trash = environmentPath("XDG_DATA_HOME").value_or(folders.home / ".local/share") / "Trash/files";
    return folders;
}

} // namespace brellin
