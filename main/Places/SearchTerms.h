#pragma once

#include <cstdint>

namespace brellin {

/// Narrows the results of a search; all three must be met.
struct SearchFilters {
    enum class Kind : std::uint8_t {
        Any,
        Folders,
        Images,
        Videos,
        Music,
        Pdf,
        Documents, ///< including PDF
        Archives,
        Programs,
        Others
    };
    /// When the entry was modified last.
    enum class Age : std::uint8_t {
        Any,
        Today,
        Week,  ///< today and the six days before
        Month, ///< today and the 29 days before
        Year,  ///< today and the 364 days before
        Older  ///< before that year
    };
    /// Of files, in decimal units; folders have no size.
    enum class Size : std::uint8_t { Any, Below1MB, From1MB, From10MB, From100MB, From1GB };
    Kind kind = Kind::Any;
    Age age = Age::Any;
    Size size = Size::Any;

    bool operator==(const SearchFilters &) const = default;
    bool narrow() const { return *this != SearchFilters(); }
};

/// What a search looks for besides its text.
struct SearchTerms {
    SearchFilters filters;
    bool contents = false; ///< in the contents of files as well as in names

    bool operator==(const SearchTerms &) const = default;
};

} // namespace brellin
