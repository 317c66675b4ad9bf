#include "Runs/RunHistory.h"

#include "Runs/RunJson.h"
#include "Runs/RunKeys.h"
#include "System/StoredKind.h"

#include <algorithm>

namespace brellin {

/// Locations stored beside one run.
struct PlacesOfRun {
    QUuid run;
    std::vector<Location> values;
};

/// The marks of one run's steps as texts: "to", or "to original".
struct MarksOfRun {
    QUuid run;
    std::vector<QString> values;
};

/// The aftermath of one undo in a single record, so that a crash cannot leave half of it.
struct AftermathOfRun {
    QUuid run;
    std::vector<Location> values; ///< original paths of what was not restored
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

std::size_t sizeOf(const JournalRun &run)
{
    return run.steps.size();
}

template <class OfRun>
std::size_t sizeOf(const OfRun &one)
{
    return one.values.size();
}

/// How many records remain if as many bytes are dropped from the end as the new first record needs.
template <class Record>
std::size_t fewer(const std::vector<Record> &all, std::size_t most)
{
    std::size_t gone = 0;
    do
        gone += sizeOf(all[--most]);
    while (most > 1 && gone < sizeOf(all.front()));
    return most;
}

template <class Record>
struct Fitting {
    std::optional<std::vector<Record>> stored; ///< nullopt: nothing was changed
    std::vector<Record> dropped;
};

/// Changes a list whose newest record comes first and stores up to `longest` records, fewer if the file would become
/// too large.
template <class Record, class Change>
Result<Fitting<Record>> updateAsManyAsFit(UserDefaults &defaults, const QString &key, const Change &change)
{
    for (std::size_t most = RunHistory::longest;;) {
        std::vector<Record> dropped;
        std::size_t next = 0;
        Result<std::optional<std::vector<Record>>> stored =
            changeList<Record>(defaults, key, [&](std::optional<std::vector<Record>> old) {
                std::optional<std::vector<Record>> all = change(std::move(old).value_or(std::vector<Record>()));
                if (all && !all->empty()) {
                    all->resize(std::min(all->size(), RunHistory::longest));
                    most = std::min(most, all->size());
                    next = most > 1 ? fewer(*all, most) : 0;
                    dropped.assign(all->begin() + static_cast<std::ptrdiff_t>(most), all->end());
                    all->resize(most);
                }
                return all;
            });
        if (stored)
            return Fitting<Record>{*std::move(stored), std::move(dropped)};
        if (next == 0 || !stored.error().is(std::errc::file_too_large))
            return failure(stored.error());
        most = next;
    }
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

/// Stores a record beside a run, replacing its previous one; newest first, as many as the history keeps.
template <class OfRun>
Result<void> remember(UserDefaults &defaults, const QString &key, OfRun added)
{
    std::ignore = TRY(updateAsManyAsFit<OfRun>(defaults, key, [&](std::vector<OfRun> all) {
        const auto gone = std::erase_if(all, [&](const OfRun &one) { return one.run == added.run; });
        if (saysNothing(added) && gone == 0)
            return std::optional<std::vector<OfRun>>();
        if (!saysNothing(added))
            all.insert(all.begin(), added);
        return std::optional(std::move(all));
    }));
    return {};
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

/// The runs dropped early that would be in the history beside these.
std::vector<DroppedRun> droppedBeside(const std::vector<JournalRun> &runs, const UserDefaults &defaults)
{
    std::vector<DroppedRun> all = DroppedRun::read(defaults);
    all.resize(std::min(all.size(), RunHistory::longest - std::min(RunHistory::longest, runs.size())));
    return all;
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
    static const QStringList keys{RunKeys::history, RunKeys::dropped, RunKeys::aftermath, RunKeys::notRestored};
    return keys;
}

RunHistory::Shown RunHistory::shown() const
{
    StoredList<JournalRun> stored = storedList<JournalRun>(m_defaults, RunKeys::history);
    std::optional<StoredCondition> damage;
    if (!stored.isWhole())
        damage = conditionOf(m_defaults, storedKind<JournalRun>(RunKeys::history), stored);
    Shown all = shownWith(std::move(stored).value_or({}));
    all.damage = std::move(damage);
    return all;
}

RunHistory::Shown RunHistory::shownWith(std::vector<JournalRun> runs) const
{
    Shown all;
    all.runs = std::move(runs);
    all.dropped = droppedBeside(all.runs, m_defaults);
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

Result<RunHistory::Added> RunHistory::add(const JournalRun &run, const Traces &traces)
{
    // Store what the undo needs before the run: a crash in between then leaves unused records, not a run that cannot be
    // undone.
    MarksOfRun marks{run.id, {}};
    std::ranges::transform(traces.marks, std::back_inserter(marks.values), textOfMarks);
    TRY(remember(m_defaults, RunKeys::marks, std::move(marks)));
    TRY(remember(m_defaults, RunKeys::volumes, PlacesOfRun{run.id, traces.volumes}));
    TRY(remember(m_defaults, RunKeys::createdFolders, PlacesOfRun{run.id, traces.createdFolders}));
    Fitting<JournalRun> fitting =
        TRY(updateAsManyAsFit<JournalRun>(m_defaults, RunKeys::history, [&](std::vector<JournalRun> runs) {
            if (std::ranges::find(runs, run.id, &JournalRun::id) != runs.end())
                return std::optional<std::vector<JournalRun>>();
            runs.insert(runs.begin(), run);
            return std::optional(std::move(runs));
        }));
    Added added;
    std::ranges::transform(fitting.dropped, std::back_inserter(added.dropped), DroppedRun::of);
    // A failure here does not matter: the run is stored, and the caller reports the dropped runs.
    (void)DroppedRun::note(m_defaults, added.dropped, longest);
    added.runs = fitting.stored ? *std::move(fitting.stored) : runs();
    return added;
}

std::vector<DroppedRun> RunHistory::dropped() const
{
    return droppedBeside(runs(), m_defaults);
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
            return stored;
        for (JournalRun &one : *stored)
            one.undone = one.undone || one.id == run;
        return stored;
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
