#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace brellin {

/// What was in a folder at one time, to tell later what has come or was changed since. Eight bytes for each entry: it cannot
/// say what has gone.
class TreeMark {
public:
    /// Fails where something in it could not be looked at. Blocking, as long as a walk takes.
    static Result<TreeMark> of(const Location &folder, const JobControl *control = nullptr);

    /// Entries in `folder` that were not in it then, or had another size or time; at most `most` of them. A
    /// folder counts by its name. Fails as above.
    Result<std::vector<Location>> newIn(const Location &folder, std::size_t most,
                                        const JobControl *control = nullptr) const;

    /// Of what was just made, for a record of it; nothing of what is no folder, or could not be seen.
    static std::shared_ptr<const TreeMark> shared(const Location &entry);

    /// What `fromBytes` reads again, in another run of the program as well.
    QByteArray bytes() const;
    static std::optional<TreeMark> fromBytes(const QByteArray &bytes);

    bool operator==(const TreeMark &) const = default;

private:
    std::vector<std::uint64_t> m_entries; ///< sorted
};

} // namespace brellin
