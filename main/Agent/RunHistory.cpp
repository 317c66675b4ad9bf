#include "Agent/RunHistory.h"

#include "Agent/RunJson.h"
#include "Agent/RunKeys.h"
#include "System/StoredKind.h"

#include <algorithm>

namespace brellin {

/// Places remembered beside one run.
struct PlacesOfRun {
    QUuid run;
    std::vector<Location> values;
};

/// The marks of one run's steps, as texts: "to", or "to original".
struct MarksOfRun {
    QUuid run;
    std::vector<QString> values;
};

/// What the undo of one run has left, in one record: a crash must not tear it.
struct AftermathOfRun {
    QUuid run;
    std::vector<Location> values; ///< what was not restored
    std::vector<std::int64_t> steps;
    std::vector<QString> remarks;
};

template <>
struct JsonTable<PlacesOfRun> {
    static constexpr std::tuple fields{field("run", &PlacesOfRun::run), field("paths", &PlacesOfRun::values)};
};

template <>
struct JsonTable<MarksOfRun> {
    static constexpr std::tuple fields{field("run", &MarksOfRun::run), field("marks", &MarksOfRun::values)};
};

template <>
struct JsonTable<AftermathOfRun> {
    static constexpr std::tuple fields{field("run", &AftermathOfRun::run), field("paths", &AftermathOfRun::values),
                                       field("steps", &AftermathOfRun::steps),
                                       field("remarks", &AftermathOfRun::remarks)};
};

namespace {

/// Stores as many runs as the history keeps, or fewer where their file would become too large.
Result<void> asManyAsFit(const std::function<Result<void>(std::size_t most)> &store)
{
    for (std::size_t most = RunHistory::longest; most > 1; most /= 2) {
        const Result<void> stored = store(most);
        if (stored || !stored.error().is(std::errc::file_too_large))
            return stored;
    }
    return store(1);
}

template <class OfRun>
bool saysNothing(const OfRun &one)
{
    return one.values.empty();
}

bool saysNothing(const AftermathOfRun &one)
{
    return one.values.empty() && one.remarks.empty();
}

/// Remembers something beside a run in the place of what was, newest first; as many runs as the history keeps.
template <class OfRun>
Result<void> remember(UserDefaults &defaults, const QString &key, OfRun added)
{
    return asManyAsFit([&](std::size_t most) {
        return updateList<OfRun>(defaults, key, [&](std::optional<std::vector<OfRun>> stored) {
            std::vector<OfRun> all = std::move(stored).value_or(std::vector<OfRun>());
            const auto gone = std::erase_if(all, [&](const OfRun &one) { return one.run == added.run; });
            if (saysNothing(added) && gone == 0)
                return std::optional<std::vector<OfRun>>();
            if (!saysNothing(added))
                all.insert(all.begin(), added);
            all.resize(std::min(all.size(), most));
            return std::optional(std::move(all));
        });
    });
}

template <class OfRun>
std::optional<OfRun> recorded(const UserDefaults &defaults, const QString &key, const QUuid &run)
{
    std::vector<OfRun> all = storedList<OfRun>(defaults, key).value_or(std::vector<OfRun>());
    const auto found = std::ranges::find(all, run, &OfRun::run);
    return found == all.end() ? std::nullopt : std::optional(std::move(*found));
}

template <class OfRun>
auto remembered(const UserDefaults &defaults, const QString &key, const QUuid &run)
{
    std::optional<OfRun> found = recorded<OfRun>(defaults, key, run);
    return found ? std::move(found->values) : decltype(OfRun::values)();
}

QString textOfMarks(const StepMarks &marks)
{
    const auto text = [](const std::optional<EntryMark> &mark) { return mark ? mark->text() : QString(); };
    const QString to = text(marks.to);
    return marks.trashedOriginal ? to + u' ' + text(marks.trashedOriginal) : to;
}

StepMarks marksFrom(const QString &text)
{
    const qsizetype blank = text.indexOf(u' ');
    return blank < 0 ? StepMarks{EntryMark::parse(text), {}}
                     : StepMarks{EntryMark::parse(text.first(blank)), EntryMark::parse(text.sliced(blank + 1))};
}

} // namespace

StoredKind RunHistory::placesKind(const QString &key)
{
    return storedKind<PlacesOfRun>(key);
}

StoredKind RunHistory::aftermathKind()
{
    return storedKind<AftermathOfRun>(RunKeys::aftermath);
}

StoredKind RunHistory::marksKind()
{
    return storedKind<MarksOfRun>(RunKeys::marks);
}

std::vector<JournalRun> RunHistory::runs() const
{
    return storedList<JournalRun>(m_defaults, RunKeys::history).value_or({});
}

const QStringList &RunHistory::shownLists()
{
    static const QStringList keys{RunKeys::history, RunKeys::aftermath, RunKeys::notRestored};
    return keys;
}

RunHistory::Shown RunHistory::shown() const
{
    const StoredList<JournalRun> stored = storedList<JournalRun>(m_defaults, RunKeys::history);
    Shown all{stored.value_or({}), {}, {}};
    if (!stored.isWhole())
        all.damage = conditionOf(m_defaults, storedKind<JournalRun>(RunKeys::history), stored);
    for (const JournalRun &run : all.runs) {
        if (!run.undone)
            continue;
        if (Aftermath left = aftermath(run.id); !left.notRestored.empty() || !left.remarks.isEmpty())
            all.aftermath.emplace(run.id, std::move(left));
    }
    return all;
}

Result<std::vector<JournalRun>> RunHistory::readRuns() const
{
    return wholeList<JournalRun>(m_defaults, RunKeys::history, {});
}

Result<std::vector<JournalRun>> RunHistory::readableRuns() const
{
    StoredList<JournalRun> list = storedList<JournalRun>(m_defaults, RunKeys::history);
    return list.state == StoredState::Partly ? Result<std::vector<JournalRun>>(std::move(list.records)) : readRuns();
}

Result<void> RunHistory::add(const JournalRun &run, const Traces &traces)
{
    // First what the undo needs besides the run: a crash in between leaves a note without a run, not the reverse.
    MarksOfRun marks{run.id, {}};
    std::ranges::transform(traces.marks, std::back_inserter(marks.values), textOfMarks);
    TRY(remember(m_defaults, RunKeys::marks, std::move(marks)));
    TRY(remember(m_defaults, RunKeys::volumes, PlacesOfRun{run.id, traces.volumes}));
    TRY(remember(m_defaults, RunKeys::createdFolders, PlacesOfRun{run.id, traces.createdFolders}));
    return asManyAsFit([&](std::size_t most) {
        return updateList<JournalRun>(m_defaults, RunKeys::history, [&](std::optional<std::vector<JournalRun>> stored) {
            std::vector<JournalRun> runs = std::move(stored).value_or(std::vector<JournalRun>());
            if (std::ranges::find(runs, run.id, &JournalRun::id) != runs.end())
                return std::optional<std::vector<JournalRun>>();
            runs.insert(runs.begin(), run);
            runs.resize(std::min(runs.size(), most));
            return std::optional(std::move(runs));
        });
    });
}

Result<void> RunHistory::markUndone(const QUuid &run, const Aftermath &aftermath)
{
    TRY(remember(m_defaults, RunKeys::aftermath,
                 AftermathOfRun{run,
                                aftermath.notRestored,
                                {aftermath.left.begin(), aftermath.left.end()},
                                {aftermath.remarks.begin(), aftermath.remarks.end()}}));
    return updateList<JournalRun>(m_defaults, RunKeys::history, [&](std::optional<std::vector<JournalRun>> stored) {
        if (!stored)
            return std::optional<std::vector<JournalRun>>();
        for (JournalRun &one : *stored)
            one.undone = one.undone || one.id == run;
        return std::optional(*std::move(stored));
    });
}

RunHistory::Traces RunHistory::traces(const QUuid &run) const
{
    Traces traces;
    traces.createdFolders = remembered<PlacesOfRun>(m_defaults, RunKeys::createdFolders, run);
    traces.volumes = remembered<PlacesOfRun>(m_defaults, RunKeys::volumes, run);
    std::ranges::transform(remembered<MarksOfRun>(m_defaults, RunKeys::marks, run), std::back_inserter(traces.marks),
                           marksFrom);
    return traces;
}

RunHistory::Aftermath RunHistory::aftermath(const QUuid &run) const
{
    const auto left = recorded<AftermathOfRun>(m_defaults, RunKeys::aftermath, run);
    if (!left)
        return {remembered<PlacesOfRun>(m_defaults, RunKeys::notRestored, run), {}, {}};
    return {left->values,
            {left->steps.begin(), left->steps.end()},
            QStringList(left->remarks.begin(), left->remarks.end())};
}

} // namespace brellin
