#pragma once

#include "Base/Location.h"

#include <cstdint>

namespace brellin::test {

/// A mount visible to this process only. Needs root; otherwise nothing is mounted.
class PrivateMount {
public:
    PrivateMount(const Location &folder, const char *type, const char *options);
    /// Bind-mounts an existing folder.
    static PrivateMount bind(const Location &shown, const Location &folder);
    ~PrivateMount();
    PrivateMount(const PrivateMount &) = delete;
    PrivateMount &operator=(const PrivateMount &) = delete;
    explicit operator bool() const { return m_mounted; }
    /// Whether this process has a private mount namespace.
    static bool possible();

    /// Remounts it read-only.
    bool makeReadOnly() const;
    /// Fills the volume with a file of this name until only `bytes` are free.
    void leaveFree(std::int64_t bytes, const char *name) const;

private:
    PrivateMount(const Location &folder, bool mounted) : m_folder(folder), m_mounted(mounted) {}

    Location m_folder;
    bool m_mounted;
};

} // namespace brellin::test
