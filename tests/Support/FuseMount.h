#pragma once

#include "Base/Location.h"

#include <string>

namespace brellin::test {

/// A volume mounted through FUSE, visible to this process only: no exclusive rename, no inode numbers that last, and
/// removing an open file leaves a hidden one. Needs root and the tools; otherwise nothing is mounted.
class FuseMount {
public:
    /// Mounts a small exFAT volume on `folder`, as on memory cards: no hard links. The image lies beside that.
    explicit FuseMount(const Location &folder);
    /// Mounts `served` on `folder` as a share of a server would be: hard links of one file have different numbers.
    static FuseMount share(const Location &served, const Location &folder);
    ~FuseMount();
    FuseMount(const FuseMount &) = delete;
    FuseMount &operator=(const FuseMount &) = delete;
    explicit operator bool() const { return m_mounted; }

private:
    FuseMount(const Location &folder, bool mounted) : m_folder(folder), m_mounted(mounted) {}

    Location m_folder;
    std::string m_device;
    bool m_mounted = false;
};

} // namespace brellin::test
