#include "Support/Isolation.h"

#include <cstdlib>

namespace brellin::test {

Isolation::Isolation()
{
    m_home.folder("home");
    const std::string root = m_home.root().native();
    ::setenv("HOME", (root + "/home").c_str(), 1);
    ::setenv("XDG_CONFIG_HOME", (root + "/config").c_str(), 1);
    ::setenv("XDG_DATA_HOME", (root + "/data").c_str(), 1);
    ::setenv("XDG_STATE_HOME", (root + "/state").c_str(), 1);
    ::setenv("XDG_CACHE_HOME", (root + "/cache").c_str(), 1);
    ::setenv("TZ", "Europe/Berlin", 1);
}

} // namespace brellin::test
