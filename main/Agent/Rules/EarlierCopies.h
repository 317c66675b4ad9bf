#pragma once

#include "Agent/Rules/Candidate.h"
#include "Base/JobControl.h"

#include <map>
#include <string>
#include <vector>

namespace brellin {

/// Finds the copies that a copy rule made before, so that no scan makes another. Lists each target folder once: use one for
/// one scan only. Reads only.
class EarlierCopies {
public:
    /// `control` may be none, and outlives it.
    explicit EarlierCopies(JobControl *control) : m_control(control) {}

    /// Whether a candidate's copy is there, under its name or one of its numbers. Size and time tell, give or take what a
    /// volume makes of times; where only the time differs, the content does.
    bool hold(const Candidate &candidate);

private:
    struct Entry {
        std::string name;
        FileAttributes attributes;
    };
    /// By name, and by the name without its number.
    using Folder = std::multimap<std::string, Entry>;

    const Folder &entriesOf(const Location &folder);
    std::vector<const Entry *> namedLike(const Location &wanted);
    bool isCopy(const Candidate &candidate, const Location &place, const FileAttributes &there);
    bool isCopiedPackage(const Candidate &candidate, const Location &place);

    JobControl *m_control;
    std::map<Location, Folder> m_folders;
};

} // namespace brellin
