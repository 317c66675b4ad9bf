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

/// Removes a tree for good, each folder after what is in it, never through a link and never into another mount. What of it
/// may go, a derived class says. Goes on after a failure and keeps the first, with the name where it is not the top's; what
/// has vanished meanwhile is none.
class RemovalWalk {
public:
    virtual ~RemovalWalk() = default;

protected:
    /// `path` is the mark of the top, as `OwnEntries::pathMark` counts.
    Result<void> run(NameIn top, std::uint64_t path);

    /// Asked once for every entry there is, for a folder before what is in it; one that may not go is not entered either.
    virtual bool mayGo(NameIn entry, std::uint64_t path, const struct stat &now) = 0;
    virtual Result<Descriptor> open(NameIn folder) { return openFolder(folder); }
    /// A folder that may go has been opened and proved to be the one that was asked for.
    virtual void entered(std::string_view, const Descriptor &, const struct stat &) {}
    /// What may go, does: anything but a folder, and a folder that everything in it was tried of.
    virtual Result<void> removeFile(NameIn entry, const struct stat &now);
    virtual Result<void> removeFolder(NameIn entry);
    /// A folder that may go still holds something in the end.
    virtual void filled(std::string_view name) = 0;

    bool failed() const { return m_failure.has_value(); }
    void note(const Failure &why, std::string_view name);
    bool atTop() const { return m_levels.empty(); }
    /// The folder at hand below the top, "" for that itself.
    std::string relativeFolder() const;
    /// Of a name in the folder at hand, if the walk began at `top`.
    Location placeOf(std::string_view name, const Location &top) const;
    /// Where that entry stands in another tree of the same shape.
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
    CopyTreeFolders m_folders{4}; ///< few: a removal is also what follows when descriptors have run out
    std::vector<Level> m_levels;
    std::optional<Failure> m_failure;
};

} // namespace brellin
