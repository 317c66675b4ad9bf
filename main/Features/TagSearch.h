#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"
#include "System/ProcessRunner.h"

#include <QString>

#include <functional>
#include <vector>

namespace brellin {

/// Port for finding tagged entries. Blocking: call on workers only.
class TagSearch {
public:
    /// Called for each match while the search runs, by several threads at once. Empty: not wanted.
    using Found = std::function<void(const Location &)>;

    virtual ~TagSearch();
    /// All entries below `scope` with this tag, sorted by path.
    virtual Result<std::vector<Location>> find(const QString &tag, const Location &scope, const JobControl &control,
                                               const Found &found) const = 0;
};

/// Walks all entries below the scope, including hidden ones. Does not enter network mounts, since an unresponsive one
/// would block the search.
class WalkTagSearch : public TagSearch {
public:
    /// `leftOut`: folders to skip (the Trash).
    explicit WalkTagSearch(std::vector<Location> leftOut = {});
    Result<std::vector<Location>> find(const QString &tag, const Location &scope, const JobControl &control,
                                       const Found &found) const override;

private:
    std::vector<Location> m_leftOut;
};

/// Queries the index of macOS.
class MdfindTagSearch : public TagSearch {
public:
    explicit MdfindTagSearch(ProcessRunner &processes) : m_processes(processes) {}
    Result<std::vector<Location>> find(const QString &tag, const Location &scope, const JobControl &control,
                                       const Found &found) const override;

private:
    ProcessRunner &m_processes;
};

} // namespace brellin
