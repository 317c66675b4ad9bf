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

/// One name as a folder lists it. A zero byte follows `bytes`; they are valid as long as their block.
struct WalkName {
    std::string_view bytes;
    EntryKind kind = EntryKind::Special;
    bool kindKnown = false; ///< some file systems list names only

    const char *text() const { return bytes.data(); }
};

/// A run of names in the form in which the system hands them out, read one after the other.
class NameBlock {
public:
    /// False when no name is left.
    bool next(WalkName &name);
    /// Bytes not yet read through.
    std::size_t unread() const { return m_end - m_position; }

private:
    friend class OpenFolder;
    std::unique_ptr<char[]> m_bytes;
    std::size_t m_capacity = 0;
    std::size_t m_position = 0;
    std::size_t m_end = 0;
};

/// The names that a folder's `.hidden` list asks to hide.
using HiddenNames = std::set<std::string, std::less<>>;

enum class LastLink { Follow, Refuse };

/// An open folder: everything in it is reached through this handle, never by a path that may be too long or may lead
/// elsewhere by now. All a walk needs from the platform is here. Access times are left alone where the system lets us.
class OpenFolder {
public:
    /// The folder of that path; a link to a folder is followed only where that is asked for.
    static Result<OpenFolder> open(const std::string &path, LastLink link);
    /// A folder in this one, never through a link.
    Result<OpenFolder> child(const char *name) const;
    Result<OpenFolder> parent() const;
    /// The same folder under a handle of its own.
    Result<OpenFolder> again() const;

    bool isOpen() const { return m_folder.isOpen(); }
    /// Gives the handle back; identity and mount stay known.
    void close() { m_folder.reset(); }

    const FileIdentity &identity() const { return m_identity; }
    /// 0 where the system does not tell mounts apart.
    std::uint64_t mount() const { return m_mount; }
    bool onVolumeOf(const OpenFolder &other) const
    {
        return m_identity.device == other.m_identity.device && m_mount == other.m_mount;
    }
    /// Whether another volume is mounted on the folder of this name. Does not touch that volume, which may be a server
    /// that no longer answers.
    bool hasVolumeAt(const char *name) const;

    /// The next names in the file system's order; an empty block at the end. What the block held is dropped.
    Result<void> readNames(NameBlock &block) const;
    /// All names up to the end, behind those that the block still holds, in no more memory than they need.
    Result<void> readRemainingNames(NameBlock &block) const;
    /// False when the entry cannot be examined (it vanished, the folder lacks the search permission).
    bool readAttributes(const char *name, Attribute wanted, FileAttributes &attributes) const;
    /// The names in this folder's `.hidden` list, null when it has none.
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
