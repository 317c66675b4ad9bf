#include "Disk/CopyEntry.h"

#include "Disk/CopyTree.h"
#include "Disk/CopyTreeRemoval.h"
#include "Disk/EntryPlace.h"

#include <cerrno>
#include <utility>

namespace brellin {

namespace {

/// Compares the target's ancestors by identity, since links and mounts give a folder several paths.
Result<void> refuseIntoItself(const struct stat &source, const Descriptor &destinationFolder)
{
    Descriptor folder = TRY(openFolderPlace(NameIn{destinationFolder.number(), "."}));
    struct stat status = TRY(statusOf({folder.number(), "."}));
    for (;;) {
        if (sameEntry(status, source))
            return failure(Failure{QStringLiteral("Ein Ordner kann nicht in sich selbst kopiert werden."),
                                   std::make_error_code(std::errc::invalid_argument)});
        Descriptor above = TRY(openFolderPlace(NameIn{folder.number(), ".."}));
        const struct stat aboveStatus = TRY(statusOf({above.number(), "."}));
        if (sameEntry(status, aboveStatus))
            return {};
        folder = std::move(above);
        status = aboveStatus;
    }
}

} // namespace

Result<CopyReport> copyEntry(const Location &source, const Location &destination, const CopyOptions &options)
{
    const EntryPlace from = TRY(openPlace(source));
    const EntryPlace to = TRY(openPlace(destination));
    const struct stat status = TRY(statusOf(from.at()));
    if (S_ISDIR(status.st_mode))
        TRY(refuseIntoItself(status, to.folder));
    return CopyTree(standardised(source), to.folder.number(), options).run(from.at(), to.at());
}

Result<void> removeOwnCopy(const Location &location)
{
    const auto place = openPlace(location);
    if (!place && place.error().is(std::errc::no_such_file_or_directory))
        return {};
    if (!place)
        return failure(place.error());
    return removeTree(place->at());
}

} // namespace brellin
