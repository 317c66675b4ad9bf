#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/EntryPlace.h"

#include <string>

namespace brellin {

/// A folder that is held open for one operation after the other in it: all of them go to this very folder, whatever
/// becomes of its path meanwhile. Permission to read it is not required.
class HeldFolder {
public:
    /// A link to a folder is followed.
    static Result<HeldFolder> open(const Location &folder) { return HeldFolder(folder, TRY(openFolderPlace(folder))); }

    const Location &path() const { return m_path; } ///< by which it was opened
    int number() const { return m_folder.number(); }
    NameIn entry(const std::string &name) const { return {m_folder.number(), name.c_str()}; }

private:
    HeldFolder(Location path, Descriptor folder) : m_path(std::move(path)), m_folder(std::move(folder)) {}

    Location m_path;
    Descriptor m_folder;
};

} // namespace brellin
