#include "Places/Linux/UserDirs.h"

#include "System/ReadWhole.h"

#include <cstdlib>

namespace brellin {

namespace {

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

} // namespace

UserDirs::UserDirs(const Location &configuration, Location home)
    : m_text(readWhole(configuration / "user-dirs.dirs").value_or(QByteArray()).toStdString())
    , m_home(std::move(home))
{
}

/// The last assignment counts, as in a shell.
std::optional<Location> UserDirs::folder(std::string_view key) const
{
    std::optional<Location> found;
    for (std::string_view rest = m_text; !rest.empty();) {
        const std::size_t end = rest.find('\n');
        if (std::optional<Location> set = folderIn(rest.substr(0, end), key, m_home))
            found = *std::move(set);
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    }
    return found;
}

/// A relative path counts as unset, as XDG demands.
Location configurationFolder(const Location &home)
{
    const char *const set = std::getenv("XDG_CONFIG_HOME");
    return set != nullptr && *set == '/' ? standardised(set) : home / ".config";
}

} // namespace brellin
