#include "Agent/RunHistory.h"

#include "Agent/AgentJson.h"
#include "Agent/StoredList.h"

#include <algorithm>

namespace brellin {

/// Places remembered beside one run.
struct PlacesOfRun {
    QUuid run;
    std::vector<Location> paths;
};

template <>
struct JsonTable<PlacesOfRun> {
    static constexpr std::tuple fields{field("run", &PlacesOfRun::run), field("paths", &PlacesOfRun::paths)};
};

namespace {

const QString historyKey = QStringLiteral("agentHistory");
const QString createdKey = QStringLiteral("agentCreatedFolders");
const QString notRestoredKey = QStringLiteral("agentNotRestored");

/// Remembers places beside a run, newest first; as many runs as the history keeps.
Result<void> remember(UserDefaults &defaults, const QString &key, const QUuid &run, const std::vector<Location> &paths)
{
    if (paths.empty())
        return {};
    return updateList<PlacesOfRun>(defaults, key, [&](std::optional<std::vector<PlacesOfRun>> stored) {
        std::vector<PlacesOfRun> all = std::move(stored).value_or(std::vector<PlacesOfRun>());
        std::erase_if(all, [&](const PlacesOfRun &one) { return one.run == run; });
        all.insert(all.begin(), {run, paths});
        all.resize(std::min(all.size(), RunHistory::longest));
        return std::optional(std::move(all));
    });
}

std::vector<Location> remembered(const UserDefaults &defaults, const QString &key, const QUuid &run)
{
    const std::vector<PlacesOfRun> all = storedList<PlacesOfRun>(defaults, key).value_or(std::vector<PlacesOfRun>());
    const auto found = std::ranges::find(all, run, &PlacesOfRun::run);
    return found == all.end() ? std::vector<Location>() : found->paths;
}

} // namespace

std::vector<JournalRun> RunHistory::runs() const
{
    return storedList<JournalRun>(m_defaults, historyKey).value_or(std::vector<JournalRun>());
}

Result<std::vector<JournalRun>> RunHistory::readRuns() const
{
    std::optional<QByteArray> text;
    TRY(m_defaults.update(historyKey, [&](const std::optional<QByteArray> &stored) {
        text = stored;
        return std::optional<UserDefaults::Change>();
    }));
    if (!text)
        return std::vector<JournalRun>();
    JsonResult<std::vector<JournalRun>> read = fromJsonText<std::vector<JournalRun>>(*text);
    if (!read)
        return failure(QStringLiteral("Der Verlauf ist nicht lesbar: ") + read.error().sentence());
    return *std::move(read);
}

Result<void> RunHistory::add(const JournalRun &run, const std::vector<Location> &createdFolders)
{
    // First what the undo needs besides the run: a crash in between leaves a note without a run, not the reverse.
    TRY(remember(m_defaults, createdKey, run.id, createdFolders));
    return updateList<JournalRun>(m_defaults, historyKey, [&](std::optional<std::vector<JournalRun>> stored) {
        std::vector<JournalRun> runs = std::move(stored).value_or(std::vector<JournalRun>());
        if (std::ranges::find(runs, run.id, &JournalRun::id) != runs.end())
            return std::optional<std::vector<JournalRun>>();
        runs.insert(runs.begin(), run);
        runs.resize(std::min(runs.size(), longest));
        return std::optional(std::move(runs));
    });
}

Result<void> RunHistory::markUndone(const QUuid &run, const std::vector<Location> &notRestored)
{
    TRY(remember(m_defaults, notRestoredKey, run, notRestored));
    return updateList<JournalRun>(m_defaults, historyKey, [&](std::optional<std::vector<JournalRun>> stored) {
        if (!stored)
            return std::optional<std::vector<JournalRun>>();
        for (JournalRun &one : *stored)
            one.undone = one.undone || one.id == run;
        return std::optional(*std::move(stored));
    });
}

std::vector<Location> RunHistory::createdFolders(const QUuid &run) const
{
    return remembered(m_defaults, createdKey, run);
}

std::vector<Location> RunHistory::notRestored(const QUuid &run) const
{
    return remembered(m_defaults, notRestoredKey, run);
}

} // namespace brellin
