#pragma once

#include "Base/Location.h"

#include <cstdint>

namespace brellin::test {

/// A volume of its own that only this process sees, for tests that root runs; elsewhere there is none.
class PrivateMount {
public:
    PrivateMount(const Location &folder, const char *type, const char *options);
    /// A folder that is there already, shown here as well.
    static PrivateMount bind(const Location &shown, const Location &folder);
    ~PrivateMount();
    PrivateMount(const PrivateMount &) = delete;
    PrivateMount &operator=(const PrivateMount &) = delete;
    explicit operator bool() const { return m_mounted; }
    /// Whether this process sees mounts that no other does.
    static bool possible();

    /// From now on nothing in it can be changed.
    bool makeReadOnly() const;
    /// Fills it up, with a file of this name, until `bytes` are free.
    void leaveFree(std::int64_t bytes, const char *name) const;

private:
    PrivateMount(const Location &folder, bool mounted) : m_folder(folder), m_mounted(mounted) {}

    Location m_folder;
    bool m_mounted;
};

} // namespace brellin::test
