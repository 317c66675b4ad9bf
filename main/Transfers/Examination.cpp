#include "Transfers/Examination.h"

#include "Base/German.h"
#include "Disk/Walk.h"
#include "Transfers/Ancestors.h"
#include "Transfers/FolderComparison.h"
#include "Transfers/TransferLogLines.h"
#include "Transfers/TransferQueue.h"
#include "Transfers/UnfinishedMove.h"

#include <algorithm>
#include <atomic>
#include <set>

#include <sys/stat.h>

namespace brellin {

namespace {

using Deadline = std::chrono::steady_clock::time_point;

/// Time limit for counting the folders of all lines together.
constexpr std::chrono::seconds describing{2};

/// Content of a folder, counted until the deadline.
struct FolderContent {
    std::int64_t entries = 0; ///< direct children
    std::int64_t bytes = 0;
    bool complete = true;
};

FolderContent contentOf(const Location &folder, Deadline deadline)
{
    FolderContent content;
    WalkOptions options;
    options.attributes = Attribute::Size;
    const auto count = [&](const WalkEntry &entry) {
        content.entries += entry.depth == 0 ? 1 : 0;
        content.bytes += entry.attributes.isFile() ? entry.attributes.size : 0;
        content.complete = std::chrono::steady_clock::now() < deadline;
        return content.complete ? WalkStep::Continue : WalkStep::Stop;
    };
    if (!walk(folder, options, count))
        content.complete = false;
    return content;
}

/// Compares folders by identity, so that links and mounts do not matter.
class SourceCheck {
public:
    static Result<SourceCheck> forDestination(const Location &folder)
    {
        SourceCheck check;
        check.m_ancestors = TRY(selfAndAncestors(folder));
        return check;
    }

    /// Whether the source is the destination folder or one of its ancestors.
    bool holdsDestination(const Location &src) const
    {
        struct stat status{};
        if (::lstat(src.c_str(), &status) != 0 || !S_ISDIR(status.st_mode))
            return false;
        const FileIdentity identity{status.st_dev, status.st_ino};
        return std::ranges::find(m_ancestors, identity) != m_ancestors.end();
    }

private:
    std::vector<FileIdentity> m_ancestors;
};

/// Null if not everything can be read: the user could not be shown what would be deleted.
std::shared_ptr<const SeenTree> seenAt(const Location &entry, const JobControl &control)
{
    Result<SeenTree> seen = SeenTree::of(entry, &control);
    return seen ? std::make_shared<const SeenTree>(*std::move(seen)) : nullptr;
}

std::optional<MergePreview> mergePreview(const Location &src, const Location &dst, const StayingEntries &staying,
                                         const JobControl &control, Deadline deadline)
{
    if (!mayMerge(src, dst, staying))
        return std::nullopt;
    const Result<FolderComparison> compared = FolderComparison::of(src, dst, staying, control, deadline);
    if (!compared)
        return std::nullopt;
    return MergePreview{compared->collisions(), compared->complete && compared->unread.isEmpty()};
}

TakenPlace takenPlace(const Location &src, const Location &dst, const StayingEntries &staying,
                      const TransferServices &services, const JobControl &control, Deadline deadline)
{
    TakenPlace taken;
    taken.existingIsFolder = readAttributes(dst).value_or(FileAttributes()).isFolder();
    taken.stays = staying.whyItStays(dst);
    taken.trashable = services.trash.possible(dst);
    // Read before the lines, so that they cover everything that may be deleted.
    if (taken.replaceable() && !taken.trashable)
        taken.seen = seenAt(dst, control);
    if (taken.replaceable() && !taken.trashable && !taken.seen)
        taken.stays = WhyItStays::NotSeen;
    // Never delete the only complete copy of an interrupted move for what is left of its source.
    if (taken.replaceable() && !taken.trashable && mayBeCopyOfUnfinishedMove(src, dst, services.logs))
        taken.stays = unreadTransferLogs(services.logs).empty() ? WhyItStays::OnlyCopy : WhyItStays::LogUnread;
    if (taken.replaceable() && taken.trashable && isOnlyCompleteCopy(src, dst, services.logs, control))
        taken.stays = WhyItStays::OnlyCopy;
    taken.existingLine = entryLine(dst, deadline);
    taken.incomingLine = entryLine(src, deadline);
    taken.incomingIsFolder = readAttributes(src).value_or(FileAttributes()).isFolder();
    if (taken.existingIsFolder && taken.incomingIsFolder)
        taken.merge = mergePreview(src, dst, staying, control, deadline);
    return taken;
}

/// Path of an entry's folder below the destination; empty for the destination itself.
Location insideOf(const Location &dst, const TransferRequest &request)
{
    const Location inside = dst.parent_path().lexically_relative(standardised(request.destination));
    return inside == "." ? Location() : inside;
}

Result<void> checkFolder(const Location &destination)
{
    struct stat status{};
    if (::stat(destination.c_str(), &status) != 0)
        return failure(Failure::lastSystem());
    return S_ISDIR(status.st_mode) ? Result<void>() : Result<void>(failure(Failure::system(ENOTDIR)));
}

} // namespace

QString entryLine(const Location &entry, Deadline deadline)
{
    const Result<FileAttributes> attributes = readAttributes(entry);
    if (!attributes)
        return attributes.error().message;
    const QString date = longDateTime(attributes->modified);
    if (attributes->isLink())
        return QStringLiteral("Verknüpfung, ") + date;
    if (!attributes->isFolder())
        return sizeText(attributes->size) + QStringLiteral(", ") + date;
    const FolderContent content = contentOf(entry, deadline);
    const QString more = content.complete ? QString() : QStringLiteral("mehr als ");
    return more + counted(content.entries, QStringLiteral("Eintrag"), QStringLiteral("Einträge")) +
           QStringLiteral(", ") + more + sizeText(content.bytes) + QStringLiteral(", ") + date;
}

Result<Examination> examineTransfer(const TransferRequest &request, const TransferServices &services,
                                    const JobControl &control)
{
    const Location folder = standardised(request.destination);
    TRY(checkFolder(folder));
    const SourceCheck check = TRY(SourceCheck::forDestination(folder));
    const Deadline deadline = std::chrono::steady_clock::now() + describing;
    const StayingEntries staying(request.sources);
    Examination found;
    std::set<Location> wanted;
    for (const Location &given : request.sources) {
        if (control.cancelled())
            return failure(Failure::cancelled());
        const Location src = standardised(given);
        if (src == folder || isAtOrBelow(folder, src) || check.holdsDestination(src)) {
            found.refused << EntryFailure{src, {QStringLiteral("Ein Ordner kann nicht in sich selbst liegen."), {}}};
            continue;
        }
        ExaminedSource source{src, folder / src.filename(), false, std::nullopt};
        source.beside = src.parent_path() == folder || !wanted.insert(source.dst).second;
        if (!source.beside && entryExists(source.dst))
            source.taken = takenPlace(src, source.dst, staying, services, control, deadline);
        found.sources.push_back(std::move(source));
    }
    return found;
}

Result<Examination> examineAgain(const TransferRequest &request, const std::vector<SourcePlace> &places,
                                 const TransferServices &services, const JobControl &control)
{
    const Deadline deadline = std::chrono::steady_clock::now() + describing;
    const StayingEntries staying(request.sources);
    Examination found;
    for (const auto &[src, dst] : places) {
        if (control.cancelled())
            return failure(Failure::cancelled());
        ExaminedSource source{src, dst, false, std::nullopt, insideOf(dst, request)};
        if (entryExists(dst))
            source.taken = takenPlace(src, dst, staying, services, control, deadline);
        found.sources.push_back(std::move(source));
    }
    return found;
}

Result<ExaminedMerge> examineMerge(const TransferRequest &request, const ExaminedSource &source,
                                   const TransferServices &services, const JobControl &control)
{
    const Deadline deadline = std::chrono::steady_clock::now() + describing;
    const StayingEntries staying(request.sources);
    FolderComparison compared = TRY(FolderComparison::of(source.src, source.dst, staying, control));
    ExaminedMerge found{{}, std::move(compared.folders), std::move(compared.unread)};
    for (const FolderComparison::Entry &entry : compared.entries) {
        if (control.cancelled())
            return failure(Failure::cancelled());
        ExaminedSource one{entry.src, entry.dst, false, std::nullopt, insideOf(entry.dst, request)};
        if (entry.taken)
            one.taken = takenPlace(entry.src, entry.dst, staying, services, control, deadline);
        found.sources.push_back(std::move(one));
    }
    return found;
}

} // namespace brellin
