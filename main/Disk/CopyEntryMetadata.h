#pragma once

#include "Base/Result.h"
#include "Disk/EntryPlace.h"
#include "Disk/MetadataMark.h"

#include <QStringList>

#include <vector>

#include <sys/stat.h>

namespace brellin {

/// Copies owner, permissions, attributes and times, and records what the target could not store.
class CopyMetadata {
public:
    /// `from` is the status of `source`, `made` that of the new copy. Returns the `MetadataMark` of the source's
    /// metadata.
    Result<std::uint64_t> apply(int source, const struct stat &from, int destination, const struct stat &made);
    /// As above for a symlink, by name.
    Result<void> applyToLink(const struct stat &from, NameIn destination, const struct stat &made);
    /// Removes permissions that a new file or folder inherited from its parent folder, so that it gets only the
    /// original's.
    static void dropInheritedAccess(int destination);

    /// A German sentence for each kind of metadata that was lost.
    QStringList notKept() const;
    void hardLinkWasSplit() { m_lost.hardLinks = true; }
    /// Adds what another thread of the copy recorded.
    void include(const CopyMetadata &other);

private:
    struct Kept {
        bool user = false;
        bool group = false;
    };
    struct Lost {
        bool attributes = false;
        bool rights = false;
        bool times = false;
        bool hardLinks = false;
    };
    enum class AccessList { None, Set };

    static Result<Kept> giveOwner(const struct stat &from, int destination, const struct stat &made);
    /// Copies extended attributes and ACLs; implemented per platform.
    Result<AccessList> copyAttributes(int source, int destination, MetadataMark &mark);
    Result<void> giveMode(int destination, mode_t mode);
    Result<void> giveTimes(const struct stat &from, int destination);

    Lost m_lost;
    std::vector<char> m_names;
    std::vector<char> m_value;
};

} // namespace brellin
