#pragma once

#include <cstdint>
#include <string_view>

#include <sys/stat.h>

namespace brellin {

/// A hash of the metadata that a copy preserves: permissions, owner, ACLs and extended attributes. Independent of the
/// order of `add`.
class MetadataMark {
public:
    MetadataMark() = default;
    explicit MetadataMark(const struct stat &status);
    void add(std::string_view attribute, std::string_view value);
    std::uint64_t number() const { return m_number; }

    /// The present mark of an open file or folder. For links use `MetadataMark(status)`.
    static std::uint64_t of(int file, const struct stat &status);

private:
    std::uint64_t m_number = 0;
};

/// Whether a copy preserves this extended attribute.
bool isCopiedAttribute(std::string_view name);

} // namespace brellin
