#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/EntryPlace.h"
#include "FileOperations/ArchiveReader.h"

#include <QStringList>

#include <functional>
#include <string>
#include <vector>

namespace brellin {

/// Creates an archive's entries below one folder, never outside. Symlinks are created after all files, so that nothing
/// is written through one.
class UnpackedTree {
public:
    /// Called with the number of bytes before each write; a failure ends unpacking.
    using MayWrite = std::function<Result<void>(std::int64_t bytes)>;

    static Result<UnpackedTree> in(const Location &folder, MayWrite mayWrite);

    /// Creates one entry, reading its content from `reader`. Unsafe or impossible entries are added to `refused` and
    /// are no failure.
    Result<void> add(const ArchivedEntry &entry, ArchiveReader &reader);
    /// Creates the symlinks and sets the folders' times.
    Result<void> finish();

    const QStringList &refused() const { return m_refused; }
    /// Number of hard links stored as copies, because the volume has no hard links.
    int separated() const { return m_separated; }

private:
    struct EntryPlace {
        Descriptor folder;
        std::string name;
        NameIn at() const { return {folder.number(), name.c_str()}; }
    };
    struct Link {
        std::vector<std::string> path;
        std::string target;
    };
    using Path = std::vector<std::string>;

    UnpackedTree(Location folder, Descriptor top, MayWrite mayWrite);
    void refuse(const ArchivedEntry &entry, const QString &why);
    Result<Descriptor> folderAt(const Path &path, std::uint32_t lastMode) const;
    Result<EntryPlace> placeFor(const Path &path) const;
    Result<void> addFile(const Path &path, const ArchivedEntry &entry, ArchiveReader &reader);
    Result<void> addFolder(const Path &path, const ArchivedEntry &entry);
    Result<void> addHardLink(const Path &path, const ArchivedEntry &entry);
    Result<void> copyInto(const EntryPlace &to, const EntryPlace &from);
    void makeLink(const Link &link);
    bool leadsOutside(const Link &link) const;
    void removeLinksThatLeadOutside();

    Location m_folder;
    Descriptor m_top;
    MayWrite m_mayWrite;
    std::vector<Link> m_links;
    std::vector<std::pair<Location, Instant>> m_folderTimes;
    QStringList m_refused;
    int m_separated = 0;
};

} // namespace brellin
