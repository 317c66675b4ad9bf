#pragma once

#include "Disk/RemovalWalk.h"

#include <vector>

namespace brellin {

/// Removes of a tree what a derived class says, and tells the names of the rest.
class KeepingRemoval : protected RemovalWalk {
public:
    /// Gives the entries that stay; fails with the first reason why anything else does, after having removed what goes.
    Result<std::vector<Location>> run(NameIn top, std::uint64_t path);

protected:
    /// `top` as it is told.
    explicit KeepingRemoval(Location top) : m_top(std::move(top)) {}

    /// Whether an entry goes. A failure keeps and names it; a cancel keeps it and is the failure of the whole.
    virtual Result<bool> goes(NameIn entry, std::uint64_t path, const struct stat &now) = 0;

private:
    bool mayGo(NameIn entry, std::uint64_t path, const struct stat &now) final;
    void filled(std::string_view name) final;

    Location m_top;
    std::vector<Location> m_kept;
};

} // namespace brellin
