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

/// One entry of a folder as the storage overview shows it.
struct StorageEntry {
    enum class Kind {
        Folder,
        File,
        SmallFiles ///< the smaller files of the folder together ("weitere")
    };
    Kind kind = Kind::File;
    Location location; ///< of `SmallFiles`: the folder that holds them
    QString name;
    std::int64_t bytes = 0; ///< occupied on the disk
    std::int64_t files = 0; ///< files in it

    bool operator==(const StorageEntry &) const = default;
};

/// What a count has found so far. Files with several hard links count where they are met first.
struct StorageTotals {
    std::int64_t bytes = 0;
    std::int64_t files = 0;
    std::int64_t furtherLinks = 0; ///< names of files that were counted under another name
    std::int64_t sharedBytes = 0;  ///< what these would have been counted double
    std::int64_t unreadable = 0;   ///< folders

    bool operator==(const StorageTotals &) const = default;
};

/// The folders below one folder with what they occupy, growing while they are counted. Callable from every thread; `count`
/// by one, once.
class StorageTree {
public:
    /// So many files of one folder are kept by name, the biggest; the others are one entry.
    static constexpr std::size_t mostFiles = 200;

    explicit StorageTree(Location top);
    ~StorageTree();

    /// Counts until the end, a failure of the top folder, or a cancel. Blocking.
    Result<void> count(const JobControl &control);

    const Location &top() const { return m_top; }
    StorageTotals totals() const;
    bool holds(const Location &folder) const;
    /// What lies directly in a folder, the biggest first; nothing in one that is not known.
    std::vector<StorageEntry> entries(const Location &folder) const;
    StorageTotals totalsOf(const Location &folder) const;
    /// Takes out an entry and what lies in it.
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
