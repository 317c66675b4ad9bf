#include "Places/KnownFolders.h"

#include "System/ReadWhole.h"

#include <cstdlib>
#include <string_view>
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

std::string_view trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(" \t\r");
    return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

/// The text between double quotes; a backslash escapes the next character.
std::optional<std::string> quoted(std::string_view text)
{
    std::string value;
    if (!text.starts_with('"'))
        return std::nullopt;
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (text[i] == '"')
            return value;
        if (text[i] == '\\')
            ++i;
        if (i < text.size())
            value += text[i];
    }
    return std::nullopt;
}

/// The folder that a line `KEY="$HOME/…"` or `KEY="/…"` assigns to this key. The home folder itself means "none".
std::optional<Location> folderIn(std::string_view line, std::string_view key, const Location &home)
{
    line = trimmed(line);
    if (!line.starts_with(key))
        return std::nullopt;
    line = trimmed(line.substr(key.size()));
    if (!line.starts_with('='))
        return std::nullopt;
    const std::optional<std::string> value = quoted(trimmed(line.substr(1)));
    constexpr std::string_view homeMark = "$HOME";
    if (!value)
        return std::nullopt;
    Location folder = *value;
    if (*value == homeMark || value->starts_with("$HOME/"))
        folder = home.native() + value->substr(homeMark.size());
    if (!folder.is_absolute() || standardised(folder) == home)
        return std::nullopt;
    return standardised(folder);
}

/// The last assignment counts, as in a shell.
Location standardFolder(const StandardName &name, std::string_view settings, const Location &home)
{
    Location folder = home / name.usual;
    while (!settings.empty()) {
        const std::size_t end = settings.find('\n');
        if (std::optional<Location> set = folderIn(settings.substr(0, end), name.key, home))
            folder = *std::move(set);
        settings = end == std::string_view::npos ? std::string_view() : settings.substr(end + 1);
    }
    return folder;
}

} // namespace

KnownFolders::AccountFolders KnownFolders::accountFolders()
{
    AccountFolders folders;
    folders.home = homeFolder();
    const Location configuration = environmentPath("XDG_CONFIG_HOME").value_or(folders.home / ".config");
    const QByteArray settings = readWhole(configuration / "user-dirs.dirs").value_or(QByteArray());
    for (std::size_t i = 0; i < standardNames.size(); ++i)
        folders.standard.at(i) = standardFolder(
            standardNames.at(i), std::string_view(settings.constData(), static_cast<std::size_t>(settings.size())),
            folders.home);
    folders.trash = environmentPath("XDG_DATA_HOME").value_or(folders.home / ".local/share") / "Trash/files";
    return folders;
}

} // namespace brellin
