#pragma once

#include "Base/Result.h"
#include "Disk/EntryPlace.h"
#include "Disk/MetadataMark.h"

#include <QStringList>

#include <vector>

#include <sys/stat.h>

namespace brellin {

/// Gives copies the owner, rights, attributes and times of their originals, and remembers what a target could not keep.
class CopyMetadata {
public:
    /// `from` is the status of the open `source`, `made` that of the open copy. Gives the `MetadataMark` of what was there to be
    /// taken over.
    Result<std::uint64_t> apply(int source, const struct stat &from, int destination, const struct stat &made);
    /// The same for a link, by name.
    Result<void> applyToLink(const struct stat &from, NameIn destination, const struct stat &made);
    /// Takes off what a new file or folder got from the folder that it was made in: an original has its own rights
    /// only.
    void dropInheritedAccess(int destination);

    /// A German sentence for each kind of thing that was lost at least once.
    QStringList notKept() const;
    void hardLinkWasSplit() { m_lost.hardLinks = true; }

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
    /// Extended attributes and access lists (the platform's half).
    Result<AccessList> copyAttributes(int source, int destination, MetadataMark &mark);
    Result<void> giveMode(int destination, mode_t mode);
    Result<void> giveTimes(const struct stat &from, int destination);

    Lost m_lost;
    std::vector<char> m_names;
    std::vector<char> m_value;
};

} // namespace brellin
