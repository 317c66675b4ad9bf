#pragma once

#include <QString>

#include <cstdint>
#include <vector>

namespace brellin {

/// A user or group by number.
struct NamedId {
    std::uint32_t id = 0;
    QString name;

    bool operator==(const NamedId &) const = default;
};

/// To whom this process may give entries.
struct RightsPeople {
    std::vector<NamedId> owners; ///< none for an ordinary user
    std::vector<NamedId> groups;

    bool operator==(const RightsPeople &) const = default;
    /// May ask servers: blocking.
    static RightsPeople ofThisProcess();
};

} // namespace brellin
