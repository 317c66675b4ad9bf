#pragma once

#include "Disk/FileTypes.h"

#include <span>
#include <string_view>

namespace brellin {

constexpr std::uint32_t bits(TypeTrait trait)
{
    return static_cast<std::uint32_t>(trait);
}
constexpr std::uint32_t operator|(TypeTrait a, TypeTrait b)
{
    return bits(a) | bits(b);
}

/// What the shared MIME database does not know or takes for something else than what people have.
struct CorrectedType {
    std::string_view extension;
    std::uint32_t traits;
    std::string_view mimeName;
    const char16_t *description;
};
std::span<const CorrectedType> correctedTypes();

/// The traits that follow from a type's own name, without what it inherits.
std::uint32_t namedTraits(std::string_view mimeName);

} // namespace brellin
