#pragma once

#include "Base/Location.h"

#include <string>

namespace brellin::test {

/// A small exFAT volume mounted through FUSE, as on memory cards, visible to this process only: no hard links, no
/// exclusive rename, and removing an open file leaves a hidden one. Needs root and the tools; otherwise nothing is
/// mounted.
class FuseMount {
public:
    /// Mounts it on `folder`; the image lies beside that.
    explicit FuseMount(const Location &folder);
    ~FuseMount();
    FuseMount(const FuseMount &) = delete;
    FuseMount &operator=(const FuseMount &) = delete;
    explicit operator bool() const { return m_mounted; }

private:
    Location m_folder;
    std::string m_device;
    bool m_mounted = false;
};

} // namespace brellin::test
