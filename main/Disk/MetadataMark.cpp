#include "Disk/MetadataMark.h"

#include <functional>
#include <string>

namespace brellin {

MetadataMark::MetadataMark(const struct stat &status)
{
    add("mode", std::to_string(status.st_mode));
    add("user", std::to_string(status.st_uid));
    add("group", std::to_string(status.st_gid));
}

void MetadataMark::add(std::string_view attribute, std::string_view value)
{
    const std::hash<std::string_view> hash;
    // A sum, since attributes are listed in any order; the constant (2^64 / golden ratio) ties each value to its name.
    m_number += (hash(attribute) * 0x9E3779B97F4A7C15ULL + 1) ^ hash(value);
}

} // namespace brellin
