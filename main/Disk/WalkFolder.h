#pragma once

#include "Base/Result.h"
#include "Disk/EntryPlace.h"
#include "Disk/FileAttributes.h"
#include "Disk/Walk.h"

#include <memory>
#include <set>
#include <string>
#include <string_view>

namespace brellin {

/// A name in a folder listing. `bytes` is followed by a zero byte and valid as long as its block.
struct WalkName {
    std::string_view bytes;
    EntryKind kind = EntryKind::Special;
    bool kindKnown = false; ///< false on file systems that list names only

    const char *text() const { return bytes.data(); }
};

/// A block of names as returned by the system.
class NameBlock {
public:
    /// False if no name is left.
    bool next(WalkName &name);
    /// Number of bytes not read yet.
    std::size_t unread() const { return m_end - m_position; }

private:
    friend class OpenFolder;
    std::unique_ptr<char[]> m_bytes;
    std::size_t m_capacity = 0;
    std::size_t m_position = 0;
    std::size_t m_end = 0;
};

/// Names in a folder's `.hidden` list.
using HiddenNames = std::set<std::string, std::less<>>;

enum class LastLink { Follow, Refuse };

/// An open folder. Entries are accessed through its descriptor, since a path may be too long or have changed. Contains
/// all platform calls of a walk. Preserves access times where possible.
class OpenFolder {
public:
    /// Opens a folder by path; `link` says whether to follow a link to a folder.
    static Result<OpenFolder> open(const std::string &path, LastLink link);
    /// Opens a subfolder; never follows a link.
    Result<OpenFolder> child(const char *name) const;
    Result<OpenFolder> parent() const;
    /// Opens the same folder with a new descriptor.
    Result<OpenFolder> again() const;

    bool isOpen() const { return m_folder.isOpen(); }
    /// Closes the descriptor; identity() and mount() stay valid.
    void close() { m_folder.reset(); }

    const FileIdentity &identity() const { return m_identity; }
    /// 0 if the system does not distinguish mounts.
    std::uint64_t mount() const { return m_mount; }
    bool onVolumeOf(const OpenFolder &other) const
    {
        return m_identity.device == other.m_identity.device && m_mount == other.m_mount;
    }
    /// Whether another volume is mounted on this subfolder. Does not access that volume, which may not respond.
    bool hasVolumeAt(const char *name) const;

    /// Replaces the block by the next names in directory order; empty at the end.
    Result<void> readNames(NameBlock &block) const;
    /// Appends all remaining names to the block, with no more memory than needed.
    Result<void> readRemainingNames(NameBlock &block) const;
    /// False if the entry cannot be examined, e.g. because it vanished.
    bool readAttributes(const char *name, Attribute wanted, FileAttributes &attributes) const;
    /// The folder's `.hidden` list; null if there is none.
    std::shared_ptr<const HiddenNames> hiddenNames() const;

private:
    static Result<OpenFolder> around(Descriptor folder);
    Result<void> appendNames(NameBlock &block) const;

    Descriptor m_folder;
    FileIdentity m_identity;
    std::uint64_t m_mount = 0;
};

/// The lines of a `.hidden` list.
HiddenNames hiddenNamesIn(std::string_view list);

} // namespace brellin
