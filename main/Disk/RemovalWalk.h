#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/CopyTreeFolders.h"
#include "Disk/EntryPlace.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/stat.h>

namespace brellin {

/// Permanently removes a tree bottom-up; never follows links or enters another mount. A derived class decides what to
/// remove. Continues after failures and returns the first, with the entry's name unless it is the top. Vanished entries
/// are no failure.
class RemovalWalk {
public:
    virtual ~RemovalWalk() = default;

protected:
    /// `path` is the top's `OwnEntries::pathMark`.
    Result<void> run(NameIn top, std::uint64_t path);

    /// Called once per entry, for a folder before its content; a folder that is kept is not entered.
    virtual bool mayGo(NameIn entry, std::uint64_t path, const struct stat &now) = 0;
    virtual Result<Descriptor> open(NameIn folder) { return openFolder(folder); }
    /// Called when a folder to be removed was opened and proved to be the same.
    virtual void entered(std::string_view, const Descriptor &, const struct stat &) {}
    /// Remove an entry: a file, or a folder after its content was processed.
    virtual Result<void> removeFile(NameIn entry, const struct stat &now);
    virtual Result<void> removeFolder(NameIn entry);
    /// Called if a folder to be removed is not empty in the end.
    virtual void filled(std::string_view name) = 0;

    bool failed() const { return m_failure.has_value(); }
    void note(const Failure &why, std::string_view name);
    bool atTop() const { return m_levels.empty(); }
    /// Path of the current folder below the top, "" for the top.
    std::string relativeFolder() const;
    /// Path of a name in the current folder, given the path of the top.
    Location placeOf(std::string_view name, const Location &top) const;
    /// The corresponding entry in another tree with the same structure.
    Result<EntryPlace> counterpartOf(NameIn entry, const EntryPlace &otherTop) const;

private:
    struct Level {
        std::string name;
        std::uint64_t path;
        std::vector<ListedName> entries;
        std::size_t next = 0;
    };

    void remove(NameIn entry, std::uint64_t path);
    Result<void> enter(NameIn entry, const struct stat &expected, std::uint64_t path);
    Result<void> leave(NameIn top);

    std::uint64_t m_mount = 0;
    CopyTreeFolders m_folders{4}; ///< few, since a removal may follow when descriptors have run out
    std::vector<Level> m_levels;
    std::optional<Failure> m_failure;
};

} // namespace brellin
