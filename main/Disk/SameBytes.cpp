#include "Disk/SameBytes.h"

#include "Disk/BytesAt.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include <unistd.h>

namespace brellin {

namespace {

constexpr std::size_t comparedPiece = std::size_t(256) << 10;

std::optional<std::string> targetOf(NameIn link)
{
    std::array<char, PATH_MAX + 1> target{};
    const ssize_t length = ::readlinkat(link.folder, link.name, target.data(), target.size());
    return length >= 0 ? std::optional(std::string(target.data(), static_cast<std::size_t>(length))) : std::nullopt;
}

} // namespace

Result<bool> sameBytes(int a, int b, off_t size, const std::function<Result<void>()> &beat)
{
    std::vector<char> first(std::min(comparedPiece, static_cast<std::size_t>(size)));
    std::vector<char> second(first.size());
    for (off_t at = 0; at < size;) {
        const std::size_t wanted = std::min(first.size(), static_cast<std::size_t>(size - at));
        if (TRY(readAt(a, first.data(), wanted, at)) != wanted || TRY(readAt(b, second.data(), wanted, at)) != wanted)
            return false;
        if (std::memcmp(first.data(), second.data(), wanted) != 0)
            return false;
        at += static_cast<off_t>(wanted);
        if (beat)
            TRY(beat());
    }
    return true;
}

bool sameLinkTarget(NameIn a, NameIn b)
{
    const std::optional<std::string> first = targetOf(a);
    return first && first == targetOf(b);
}

} // namespace brellin
