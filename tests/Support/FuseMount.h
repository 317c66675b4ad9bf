#pragma once

#include "Base/Location.h"

#include <string>

namespace brellin::test {

/// A small exFAT volume through FUSE, as memory cards are, that only this process sees: no hard links, no exclusive rename, and
/// an open file that is removed leaves a hidden one. For tests that root runs where the tools are; elsewhere there is none.
class FuseMount {
public:
    /// Mounts it on `folder`; its image lies beside that.
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
