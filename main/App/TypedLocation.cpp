#include "App/TypedLocation.h"

namespace brellin {

namespace {

/// The name at the end of `word`, or of `place` if `word` ends with dots.
Location nameAtEnd(const Location &word, const Location &place)
{
    const Location name = word.filename();
    return name.empty() || name == "." || name == ".." ? place.filename() : name;
}

} // namespace

Location typedLocation(const Location &word)
{
    Location place;
    for (const Location &part : word) {
        if (part != "..") {
            place /= part;
            continue;
        }
        std::error_code unreachable;
        const Location above = std::filesystem::canonical(place / part, unreachable);
        if (unreachable)
            return standardised(place / nameAtEnd(word, place));
        place = above;
    }
    return standardised(place);
}

} // namespace brellin
