#include "Agent/Rules/HalfWritten.h"

#include "Base/Location.h"

#include <algorithm>
#include <array>

namespace brellin {

namespace {

constexpr std::size_t madeUpLength = 8;

bool isLetterOrDigit(char c)
{
    const char lower = static_cast<char>(c | 0x20);
    return (lower >= 'a' && lower <= 'z') || (c >= '0' && c <= '9');
}

bool isMadeUp(std::string_view part)
{
    return part.size() == madeUpLength && std::ranges::all_of(part, isLetterOrDigit);
}

} // namespace

bool isHalfWrittenExtension(std::string_view extension)
{
    constexpr auto extensions =
        std::to_array<std::string_view>({"part", "crdownload", "download", "opdownload", "partial"});
    return std::ranges::find(extensions, extension) != extensions.end();
}

std::string reservedNameOf(std::string_view halfWritten)
{
    if (lowerExtensionOf(halfWritten) != "part")
        return {};
    const std::string_view name = stemOf(halfWritten);
    const std::string_view front = stemOf(name);
    if (isMadeUp(extensionOf(name)))
        return std::string(front);
    return isMadeUp(extensionOf(front)) ? std::string(stemOf(front)).append(name.substr(front.size())) : std::string();
}

} // namespace brellin
