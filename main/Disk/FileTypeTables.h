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

/// A correction for an extension that the shared MIME database lacks or gets wrong.
struct CorrectedType {
    std::string_view extension;
    std::uint32_t traits;
    std::string_view mimeName;
    const char16_t *description;
};
std::span<const CorrectedType> correctedTypes();

/// Traits that follow from the MIME name alone, without its ancestors.
std::uint32_t namedTraits(std::string_view mimeName);

} // namespace brellin
