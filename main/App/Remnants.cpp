#include "App/Remnants.h"

#include "Base/AbandonablePool.h"
#include "Base/German.h"
#include "Base/PoolWork.h"
#include "Disk/HiddenFolder.h"
#include "Disk/HiddenNote.h"
#include "FileOperations/RenameLog.h"
#include "Runs/Recovery.h"
#include "Runs/RunJournal.h"
#include "Transfers/Leftovers.h"
#include "Transfers/TransferLogLines.h"
#include "Transfers/UnfinishedMove.h"

#include <algorithm>
#include <future>
#include <iterator>

namespace brellin {

namespace {

using RemnantKind = Remnant::Kind;

/// The input of the search; by value, so that an abandoned worker can continue with it.
struct Search {
    Location transferLogs;
    Location renameLogs;
    Location archiveLogs;
    Location journals;
    std::vector<Location> folders;
    Instant now;
};

Search searchOf(Services &services, const std::vector<Location> &folders)
{
    return {services.transferLogs(), services.renameLogs(), services.archiveLogs(), services.journals(), folders,
            services.clock().now()};
}

std::vector<Location> unfinishedCopies(const Search &search)
{
    std::vector<Location> found = loggedLeftovers(search.transferLogs);
    for (const Location &place : notedHiddenPlaces(search.archiveLogs)) {
        found.push_back(place);
        if (const std::optional<Location> reserve = reservedFor(place))
            found.push_back(*reserve);
    }
    for (const Location &folder : search.folders)
        std::ranges::copy(transferLeftovers(folder, search.transferLogs, SystemClock()), std::back_inserter(found));
    std::ranges::sort(found);
    const auto doubled = std::ranges::unique(found);
    found.erase(doubled.begin(), doubled.end());
    return found;
}

bool isOfAnArchive(const Location &entry)
{
    const std::string name = entry.filename().native();
    return name.starts_with(packingPrefix) || name.starts_with(unpackingPrefix);
}

std::vector<CutShortRename> cutShort(const Search &search)
{
    std::vector<CutShortRename> found = loggedCutShortRenames(search.renameLogs);
    for (const Location &folder : search.folders) {
        for (CutShortRename &one : cutShortRenames(search.renameLogs, folder, search.now)) {
            if (std::ranges::find(found, one) == found.end())
                found.push_back(std::move(one));
        }
    }
    return found;
}

std::optional<RemnantKind> journalKind(const Location &file)
{
    const std::string name = file.filename().native();
    if (name.ends_with(".ungeklärt"))
        return RemnantKind::Unresolved;
    // Locked: its owner is alive.
    if (!name.ends_with(".jsonl") || !FileLock::tryNow(file))
        return std::nullopt;
    return name.starts_with("undo-") ? RemnantKind::Undo : RemnantKind::Run;
}

std::vector<UnreadLog> unreadIn(const Search &search)
{
    std::vector<UnreadLog> found = unreadTransferLogs(search.transferLogs);
    std::ranges::move(unreadRenameLogs(search.renameLogs), std::back_inserter(found));
    std::ranges::move(RunJournal::unread(search.journals), std::back_inserter(found));
    std::ranges::move(unreadHiddenNotes(search.archiveLogs), std::back_inserter(found));
    return found;
}

std::vector<Remnant> journalsIn(const Location &folder)
{
    std::vector<Remnant> found;
    std::error_code none;
    for (std::filesystem::directory_iterator entry(folder, none), end; !none && entry != end; entry.increment(none)) {
        if (const std::optional<RemnantKind> kind = journalKind(entry->path()))
            found.push_back({*kind, entry->path()});
    }
    std::ranges::sort(found, {}, &Remnant::path);
    return found;
}

/// Finds all but unfinished moves, whose comparison may be slow.
std::vector<Remnant> findBesideMoves(const Search &search)
{
    std::vector<Remnant> found;
    for (const Location &copy : unfinishedCopies(search))
        found.push_back({isOfAnArchive(copy) ? RemnantKind::Archive : RemnantKind::Transfer, copy});
    for (const CutShortRename &batch : cutShort(search)) {
        for (const LoggedRename &one : batch.renames) {
            if (entryExists(one.temporary))
                found.push_back({RemnantKind::Rename, one.temporary});
        }
    }
    for (const Location &folder : {search.journals, search.renameLogs})
        std::ranges::copy(journalsIn(folder), std::back_inserter(found));
    for (const UnreadLog &log : unreadIn(search)) {
        std::erase_if(found, [&](const Remnant &one) { return one.path == log.file; });
        found.push_back({RemnantKind::Unresolved, log.file});
    }
    return found;
}

std::size_t countNoted(const Search &search)
{
    const std::vector<UnfinishedMove> moves = notedMoves(search.transferLogs);
    const auto whole = std::ranges::count_if(moves, entryExists, &UnfinishedMove::copy);
    return findBesideMoves(search).size() + static_cast<std::size_t>(whole);
}

} // namespace

QString Remnant::word() const
{
    switch (kind) {
    case RemnantKind::Transfer:
        return QStringLiteral("transfer");
    case RemnantKind::Move:
        return QStringLiteral("move");
    case RemnantKind::Archive:
        return QStringLiteral("archive");
    case RemnantKind::Rename:
        return QStringLiteral("rename");
    case RemnantKind::Run:
        return QStringLiteral("run");
    case RemnantKind::Undo:
        return QStringLiteral("undo");
    case RemnantKind::Unresolved:
        return QStringLiteral("unresolved");
    }
    return {};
}

QString Remnant::title() const
{
    switch (kind) {
    case RemnantKind::Transfer:
        return QStringLiteral("unfertige Kopie");
    case RemnantKind::Move:
        return QStringLiteral("Original einer vollständigen Kopie");
    case RemnantKind::Archive:
        return QStringLiteral("unfertiges Archiv");
    case RemnantKind::Rename:
        return QStringLiteral("ohne richtigen Namen");
    case RemnantKind::Run:
        return QStringLiteral("unterbrochene Aufräum-Aktion");
    case RemnantKind::Undo:
        return QStringLiteral("unterbrochenes Zurücknehmen");
    case RemnantKind::Unresolved:
        return QStringLiteral("ungeklärtes Protokoll");
    }
    return {};
}

std::vector<Location> foldersToSearch(const Services &services, const std::vector<Location> &named)
{
    if (!named.empty())
        return named;
    using enum StandardFolder;
    const KnownFolders &known = services.folders();
    std::vector<Location> folders{known.home, standardised(".")};
    for (const StandardFolder which : {Desktop, Documents, Downloads, Movies, Music, Pictures})
        folders.push_back(known.dir(which));
    return folders;
}

std::vector<Remnant> findRemnants(Services &services, const std::vector<Location> &folders)
{
    const Search search = searchOf(services, folders);
    std::vector<Remnant> found = findBesideMoves(search);
    for (const UnfinishedMove &move : unfinishedMoves(search.transferLogs))
        found.push_back({RemnantKind::Move, move.source});
    return found;
}

std::vector<UnreadLog> unreadLogs(Services &services)
{
    return unreadIn(searchOf(services, {}));
}

EntryFailures settleRemnants(Services &services, const std::vector<Location> &folders)
{
    const Search search = searchOf(services, folders);
    EntryFailures failures =
        removeTransferLeftovers(unfinishedCopies(search), search.transferLogs, services.clock(), services.files());
    for (const UnfinishedMove &move : unfinishedMoves(search.transferLogs))
        failures << finishMove(move, services.files());
    for (const CutShortRename &batch : cutShort(search))
        failures << restoreCutShort(batch, services.files());
    recoverInterruptedRuns(services.forAgent());
    return failures;
}

void mentionRemnants(Services &services, Terminal &terminal)
{
    constexpr auto patience = std::chrono::seconds(2);
    const auto pool = abandonablePool();
    const auto promise = std::make_shared<std::promise<std::size_t>>();
    std::future<std::size_t> count = promise->get_future();
    const auto look = [promise, search = searchOf(services, foldersToSearch(services, {}))] {
        promise->set_value(countNoted(search));
    };
    // Registered as open work, since the program may exit before an unresponsive share answers.
    PoolWork::start(*pool, look, std::make_shared<JobControl>());
    if (count.wait_for(patience) != std::future_status::ready) {
        terminal.message(QStringLiteral("Nach Resten konnte nicht gesehen werden: Ein Laufwerk antwortet nicht."));
        return;
    }
    if (const auto found = static_cast<qint64>(count.get()); found > 0)
        terminal.message(QStringLiteral("Abgebrochene Vorgänge haben etwas hinterlassen (%1). Zeigen: brellin reste · "
                                        "Aufräumen: brellin reste --aufraeumen")
                             .arg(counted(found, QStringLiteral("Eintrag"), QStringLiteral("Einträge"))));
}

} // namespace brellin
