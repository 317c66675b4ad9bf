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

/// A compact record of a folder's content, to find what was added or changed since. Eight bytes per entry: it cannot
/// tell what was removed.
class TreeMark {
public:
    /// Fails if not everything can be read. Walks the folder; blocking.
    static Result<TreeMark> of(const Location &folder, const JobControl *control = nullptr);

    /// Entries in `folder` that were added, or have another size or time; at most `most`. Subfolders are compared by
    /// path only. Fails like `of`.
    Result<std::vector<Location>> newIn(const Location &folder, std::size_t most,
                                        const JobControl *control = nullptr) const;

    /// Mark of a folder that was just created; null if `entry` is no folder or cannot be read.
    static std::shared_ptr<const TreeMark> shared(const Location &entry);

    /// Serialised form for fromBytes(); stable across runs.
    QByteArray bytes() const;
    static std::optional<TreeMark> fromBytes(const QByteArray &bytes);

    bool operator==(const TreeMark &) const = default;

private:
    std::vector<std::uint64_t> m_entries; ///< sorted
};

} // namespace brellin
