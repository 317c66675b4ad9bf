#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"
#include "System/ProcessRunner.h"

#include <QString>

#include <functional>
#include <vector>

namespace brellin {

/// Entries with a tag.
struct TaggedEntries {
    std::vector<Location> entries;    ///< sorted by path
    std::vector<Location> unreadable; ///< folders that could not be searched, by path

    bool operator==(const TaggedEntries &) const = default;
};

/// Port for finding tagged entries. Blocking: call on workers only.
class TagSearch {
public:
    /// Called for each match while the search runs, by several threads at once. Empty: not wanted.
    using Found = std::function<void(const Location &)>;

    virtual ~TagSearch();
    /// All entries below `scope` with this tag.
    virtual Result<TaggedEntries> find(const QString &tag, const Location &scope, const JobControl &control,
                                       const Found &found) const = 0;
};

/// Walks all entries below the scope, including hidden ones. Does not enter network mounts, since an unresponsive one
/// would block the search.
class WalkTagSearch : public TagSearch {
public:
    /// `leftOut`: folders to skip (the Trash).
    explicit WalkTagSearch(std::vector<Location> leftOut = {});
    Result<TaggedEntries> find(const QString &tag, const Location &scope, const JobControl &control,
                               const Found &found) const override;

private:
    std::vector<Location> m_leftOut;
};

/// Queries the index of macOS.
class MdfindTagSearch : public TagSearch {
public:
    explicit MdfindTagSearch(ProcessRunner &processes) : m_processes(processes) {}
    Result<TaggedEntries> find(const QString &tag, const Location &scope, const JobControl &control,
                               const Found &found) const override;

private:
    ProcessRunner &m_processes;
};

} // namespace brellin
