#include "Disk/FreeName.h"

#include "Disk/FileAttributes.h"

#include <algorithm>

#include <unistd.h>

namespace brellin {

namespace {

bool isContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// Inserts before the extension and shortens the stem to fit `limit`. If the extension leaves no room for the stem, it
/// is cut as well.
std::string composed(std::string_view name, std::string_view insertion, std::size_t limit)
{
    std::string_view stem = stemOf(name);
    std::string_view tail = name.substr(stem.size());
    if (insertion.size() + tail.size() >= limit) {
        stem = name;
        tail = {};
    }
    const std::size_t room = limit - std::min(limit, insertion.size() + tail.size());
    return std::string(cutText(stem, room)).append(insertion).append(tail);
}

/// Whether trying this name may succeed. Also true if that cannot be determined (no permission, unresponsive server):
/// the attempt then fails with the real reason, while trying more names would never end.
bool mayBeFree(const Location &location)
{
    const auto attributes = readAttributes(location);
    return !attributes;
}

} // namespace

std::string_view cutText(std::string_view text, std::size_t limit)
{
    if (text.size() <= limit)
        return text;
    std::size_t end = limit;
    while (end > 0 && limit - end < 3 && isContinuation(text[end]))
        --end;
    const bool startsCharacter = static_cast<unsigned char>(text[end]) >= 0xC0U;
    return text.substr(0, startsCharacter ? end : limit);
}

std::size_t nameLimit(const Location &folder)
{
    constexpr long usual = 255;
    const long limit = ::pathconf(folder.c_str(), _PC_NAME_MAX);
    return static_cast<std::size_t>(limit > 16 ? std::min(limit, usual) : usual);
}

std::string numberedName(std::string_view name, int number, std::size_t limit)
{
    return composed(name, " (" + std::to_string(number) + ")", limit);
}

std::string fittingName(std::string_view name, std::size_t limit)
{
    return name.size() <= limit ? std::string(name) : composed(name, {}, limit);
}

Location unique(const Location &location)
{
    const Location folder = location.parent_path();
    const std::string name = location.filename().native();
    constexpr std::size_t fitsEverywhere = 120;
    const std::size_t limit = name.size() <= fitsEverywhere ? 255 : nameLimit(folder);
    Location candidate = folder / fittingName(name, limit);
    for (int number = 2; !mayBeFree(candidate); ++number)
        candidate = folder / numberedName(name, number, limit);
    return candidate;
}

} // namespace brellin
