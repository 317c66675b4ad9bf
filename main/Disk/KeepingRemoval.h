#pragma once

#include "Disk/RemovalWalk.h"

#include <vector>

namespace brellin {

/// Removes the entries of a tree that a derived class selects, and collects those kept.
class KeepingRemoval : protected RemovalWalk {
public:
    /// Returns the entries kept; fails with the first other reason to keep one, after removing the rest.
    Result<std::vector<Location>> run(NameIn top, std::uint64_t path);

protected:
    /// `top` is the path used in results.
    explicit KeepingRemoval(Location top) : m_top(std::move(top)) {}

    /// Whether to remove the entry. On failure the entry is kept and listed; a cancel makes the whole removal fail.
    virtual Result<bool> goes(NameIn entry, std::uint64_t path, const struct stat &now) = 0;

private:
    bool mayGo(NameIn entry, std::uint64_t path, const struct stat &now) final;
    void filled(std::string_view name) final;

    Location m_top;
    std::vector<Location> m_kept;
};

} // namespace brellin
