#pragma once

#include <string>
#include <string_view>

namespace brellin {

/// Reads one extended attribute of many entries of one folder, each by one call. For one thread at a time.
class EntryAttribute {
public:
    /// `folder` is absolute, `attribute` the attribute's name ("user.xdg.tags").
    EntryAttribute(std::string_view folder, const char *attribute);

    /// The attribute's bytes of the entry with this name, never of a link's target; empty where it has none or cannot be read.
    /// Valid until the next call.
    std::string_view read(std::string_view name);

private:
    std::string m_path;
    std::size_t m_folderLength;
    const char *m_attribute;
    std::string m_value;
    bool m_supported = true;
};

} // namespace brellin
