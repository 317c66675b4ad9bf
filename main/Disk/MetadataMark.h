#pragma once

#include <cstdint>
#include <string_view>

#include <sys/stat.h>

namespace brellin {

/// One number for what a copy takes over beside the content: rights, owner, access lists and extended attributes. The order
/// of `add` does not matter.
class MetadataMark {
public:
    MetadataMark() = default;
    explicit MetadataMark(const struct stat &status);
    void add(std::string_view attribute, std::string_view value);
    std::uint64_t number() const { return m_number; }

    /// That of an open file or folder as it is now; of a link, `MetadataMark(status)` is all there is.
    static std::uint64_t of(int file, const struct stat &status);

private:
    std::uint64_t m_number = 0;
};

/// Whether a copy takes over an extended attribute of this name.
bool isCopiedAttribute(std::string_view name);

} // namespace brellin
