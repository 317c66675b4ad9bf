#include "Transfers/Ancestors.h"

#include "Disk/Descriptor.h"

#include <algorithm>
#include <utility>

#include <sys/stat.h>

namespace brellin {

namespace {

FileIdentity identityOf(const struct stat &status)
{
    return {status.st_dev, status.st_ino};
}

bool contains(const std::vector<FileIdentity> &all, const FileIdentity &one)
{
    return std::ranges::find(all, one) != all.end();
}

/// The entry itself and, for a link, what it leads to.
Result<std::vector<FileIdentity>> identitiesOf(const Location &entry)
{
    struct stat status{};
    if (::lstat(entry.c_str(), &status) != 0)
        return failure(Failure::lastSystem());
    std::vector<FileIdentity> all{identityOf(status)};
    if (S_ISLNK(status.st_mode) && ::stat(entry.c_str(), &status) == 0)
        all.push_back(identityOf(status));
    return all;
}

} // namespace

Result<std::vector<FileIdentity>> selfAndAncestors(const Location &folder)
{
    std::vector<FileIdentity> all;
    Descriptor at = TRY(openFolderPlace(folder));
    for (;;) {
        const FileIdentity identity = identityOf(TRY(statusOf({at.number(), "."})));
        if (!all.empty() && identity == all.back())
            return all;
        all.push_back(identity);
        at = TRY(openFolderPlace(NameIn{at.number(), ".."}));
    }
}

bool mustStay(const Location &existing, const Location &src, const Location &folder)
{
    const auto entry = identitiesOf(existing);
    const auto source = identitiesOf(src);
    const auto aboveSource = selfAndAncestors(src.parent_path());
    const auto aboveTarget = selfAndAncestors(folder);
    if (!entry || !source || !aboveSource || !aboveTarget)
        return true;
    return std::ranges::any_of(*entry, [&](const FileIdentity &one) {
        return contains(*aboveSource, one) || contains(*aboveTarget, one) || one == source->front();
    });
}

} // namespace brellin
