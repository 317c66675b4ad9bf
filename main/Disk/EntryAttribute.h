#pragma once

#include <string>
#include <string_view>

namespace brellin {

/// Reads one extended attribute of many entries in a folder, with one call each. Not thread-safe.
class EntryAttribute {
public:
    /// `folder` must be absolute; `attribute` is e.g. "user.xdg.tags".
    EntryAttribute(std::string_view folder, const char *attribute);

    /// The attribute's value for the entry of this name, without following links; empty if missing or unreadable. Valid
    /// until the next call.
    std::string_view read(std::string_view name);

private:
    std::string m_path;
    std::size_t m_folderLength;
    const char *m_attribute;
    std::string m_value;
    bool m_supported = true;
};

} // namespace brellin
