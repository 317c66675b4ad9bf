#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"
#include "System/ProcessRunner.h"

#include <QString>

#include <vector>

namespace brellin {

/// The port that finds tagged entries. Blocking: called on workers only.
class TagSearch {
public:
    virtual ~TagSearch();
    /// Every entry below `scope` that carries the tag, in the order of their paths.
    virtual Result<std::vector<Location>> find(const QString &tag, const Location &scope,
                                               const JobControl &control) const = 0;
};

/// Looks at every entry below the scope, hidden ones too. Network mounts are not entered, one that does not answer would hold
/// up the rest.
class WalkTagSearch : public TagSearch {
public:
    /// `leftOut` are folders that are not searched (the Trash).
    explicit WalkTagSearch(std::vector<Location> leftOut = {});
    Result<std::vector<Location>> find(const QString &tag, const Location &scope,
                                       const JobControl &control) const override;

private:
    std::vector<Location> m_leftOut;
};

/// Asks the index of macOS.
class MdfindTagSearch : public TagSearch {
public:
    explicit MdfindTagSearch(ProcessRunner &processes) : m_processes(processes) {}
    Result<std::vector<Location>> find(const QString &tag, const Location &scope,
                                       const JobControl &control) const override;

private:
    ProcessRunner &m_processes;
};

} // namespace brellin
