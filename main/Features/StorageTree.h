#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace brellin {

/// One entry of a folder in the storage overview.
struct StorageEntry {
    enum class Kind {
        Folder,
        File,
        SmallFiles ///< all smaller files of the folder together ("weitere")
    };
    Kind kind = Kind::File;
    Location location; ///< for `SmallFiles` the folder containing them
    QString name;
    std::int64_t bytes = 0; ///< allocated on the disk
    std::int64_t files = 0; ///< number of files in it

    bool operator==(const StorageEntry &) const = default;
};

/// Interim totals of a count. A file with several hard links counts where it is met first.
struct StorageTotals {
    std::int64_t bytes = 0;
    std::int64_t files = 0;
    std::int64_t furtherLinks = 0; ///< additional hard links of files already counted
    std::int64_t sharedBytes = 0;  ///< bytes these links would have added
    std::int64_t unreadable = 0;   ///< folders

    bool operator==(const StorageTotals &) const = default;
};

/// Tree of folders with the space they occupy, readable while it is being counted. Thread-safe; `count` must be called
/// once.
class StorageTree {
public:
    /// The largest files of a folder are listed up to this number; the others are one entry.
    static constexpr std::size_t mostFiles = 200;

    explicit StorageTree(Location top);
    ~StorageTree();

    /// Returns when the count is complete or cancelled, or if the top folder cannot be read. Blocking.
    Result<void> count(const JobControl &control);

    const Location &top() const { return m_top; }
    StorageTotals totals() const;
    bool holds(const Location &folder) const;
    /// The direct entries of a folder, largest first; empty for an unknown folder.
    std::vector<StorageEntry> entries(const Location &folder) const;
    StorageTotals totalsOf(const Location &folder) const;
    /// Removes an entry and everything below it.
    void remove(const Location &entry);

private:
    struct File;
    struct Folder;
    class Counter;

    Folder *find(const Location &folder) const;

    const Location m_top;
    mutable std::mutex m_mutex;
    std::unique_ptr<Folder> m_root;
    StorageTotals m_totals;
};

} // namespace brellin
