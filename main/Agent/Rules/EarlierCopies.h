#pragma once

#include "Agent/Rules/Candidate.h"
#include "Base/JobControl.h"

#include <map>
#include <string>
#include <vector>

namespace brellin {

/// Finds copies that a copy rule made in earlier runs, so that a scan does not make another. Lists each target folder
/// once: use one instance per scan. Read-only.
class EarlierCopies {
public:
    /// `control` may be null, and must outlive this object.
    explicit EarlierCopies(JobControl *control) : m_control(control) {}

    /// Whether the candidate's copy exists, under its name or a numbered form of it. Compares size and modification
    /// time (within the resolution of FAT), and contents if only the time differs.
    bool hold(const Candidate &candidate);

private:
    struct Entry {
        std::string name;
        FileAttributes attributes;
    };
    /// by name, and by the name without its number
    using Folder = std::multimap<std::string, Entry>;

    const Folder &entriesOf(const Location &folder);
    std::vector<const Entry *> namedLike(const Location &wanted);
    bool isCopy(const Candidate &candidate, const Location &place, const FileAttributes &there);
    bool isCopiedPackage(const Candidate &candidate, const Location &place);

    JobControl *m_control;
    std::map<Location, Folder> m_folders;
};

} // namespace brellin
