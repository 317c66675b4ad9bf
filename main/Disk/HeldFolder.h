#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/EntryPlace.h"

#include <string>

namespace brellin {

/// An open folder for several operations: all of them affect this folder, even if its path changes. Requires no read
/// permission.
class HeldFolder {
public:
    /// Follows a link to a folder.
    static Result<HeldFolder> open(const Location &folder) { return HeldFolder(folder, TRY(openFolderPlace(folder))); }

    const Location &path() const { return m_path; } ///< path it was opened by
    int number() const { return m_folder.number(); }
    NameIn entry(const std::string &name) const { return {m_folder.number(), name.c_str()}; }

private:
    HeldFolder(Location path, Descriptor folder) : m_path(std::move(path)), m_folder(std::move(folder)) {}

    Location m_path;
    Descriptor m_folder;
};

} // namespace brellin
