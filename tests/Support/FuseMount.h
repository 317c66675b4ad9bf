#pragma once

#include "Base/Location.h"

#include <string>

#include <sys/types.h>

namespace brellin::test {

/// A volume mounted through FUSE, visible to this process only: no exclusive rename, no inode numbers that last, and
/// removing an open file leaves a hidden one. Needs root and the tools; otherwise nothing is mounted.
class FuseMount {
public:
    /// Mounts a small exFAT volume without hard links on `folder`. Its image file is created beside it.
    explicit FuseMount(const Location &folder);
    /// Mounts `served` on `folder` like a server's share: hard links of one file have different inode numbers.
    static FuseMount share(const Location &served, const Location &folder);
    ~FuseMount();
    FuseMount(const FuseMount &) = delete;
    FuseMount &operator=(const FuseMount &) = delete;
    explicit operator bool() const { return m_mounted; }

    /// Stops the server, like that of a dead share, until goOn(). False if its process was not found.
    bool stop() const;
    void goOn() const;

private:
    FuseMount(const Location &folder, bool mounted) : m_folder(folder), m_mounted(mounted) {}

    Location m_folder;
    std::string m_device;
    pid_t m_server = -1;
    bool m_mounted = false;
};

} // namespace brellin::test
