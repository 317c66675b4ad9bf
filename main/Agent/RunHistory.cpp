#include "Agent/RunHistory.h"

#include "Agent/AgentJson.h"
#include "System/StoredList.h"

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

template <>
struct JsonTable<PlacesOfRun> {
    static constexpr std::tuple fields{field("run", &PlacesOfRun::run), field("paths", &PlacesOfRun::values)};
};

template <>
struct JsonTable<MarksOfRun> {
    static constexpr std::tuple fields{field("run", &MarksOfRun::run), field("marks", &MarksOfRun::values)};
};

namespace {

const QString historyKey = QStringLiteral("agentHistory");
const QString createdKey = QStringLiteral("agentCreatedFolders");
const QString notRestoredKey = QStringLiteral("agentNotRestored");
const QString marksKey = QStringLiteral("agentStepMarks");
const QString volumesKey = QStringLiteral("agentRunVolumes");

/// Remembers something beside a run, newest first; as many runs as the history keeps.
template <class OfRun>
Result<void> remember(UserDefaults &defaults, const QString &key, OfRun added)
{
    if (added.values.empty())
        return {};
    return updateList<OfRun>(defaults, key, [&](std::optional<std::vector<OfRun>> stored) {
        std::vector<OfRun> all = std::move(stored).value_or(std::vector<OfRun>());
        std::erase_if(all, [&](const OfRun &one) { return one.run == added.run; });
        all.insert(all.begin(), std::move(added));
        all.resize(std::min(all.size(), RunHistory::longest));
        return std::optional(std::move(all));
    });
}

template <class OfRun>
auto remembered(const UserDefaults &defaults, const QString &key, const QUuid &run)
{
    const std::vector<OfRun> all = storedList<OfRun>(defaults, key).value_or(std::vector<OfRun>());
    const auto found = std::ranges::find(all, run, &OfRun::run);
    return found == all.end() ? decltype(OfRun::values)() : found->values;
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

std::vector<JournalRun> RunHistory::runs() const
{
    return storedList<JournalRun>(m_defaults, historyKey).value_or(std::vector<JournalRun>());
}

RunHistory::Shown RunHistory::shown() const
{
    Shown all{runs(), {}};
    for (const JournalRun &run : all.runs) {
        if (!run.undone)
            continue;
        if (std::vector<Location> places = notRestored(run.id); !places.empty())
            all.notRestored.emplace(run.id, std::move(places));
    }
    return all;
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

Result<void> RunHistory::add(const JournalRun &run, const Traces &traces)
{
    // First what the undo needs besides the run: a crash in between leaves a note without a run, not the reverse.
    MarksOfRun marks{run.id, {}};
    std::ranges::transform(traces.marks, std::back_inserter(marks.values), textOfMarks);
    TRY(remember(m_defaults, marksKey, std::move(marks)));
    TRY(remember(m_defaults, volumesKey, PlacesOfRun{run.id, traces.volumes}));
    TRY(remember(m_defaults, createdKey, PlacesOfRun{run.id, traces.createdFolders}));
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
    TRY(remember(m_defaults, notRestoredKey, PlacesOfRun{run, notRestored}));
    return updateList<JournalRun>(m_defaults, historyKey, [&](std::optional<std::vector<JournalRun>> stored) {
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
    traces.createdFolders = remembered<PlacesOfRun>(m_defaults, createdKey, run);
    traces.volumes = remembered<PlacesOfRun>(m_defaults, volumesKey, run);
    std::ranges::transform(remembered<MarksOfRun>(m_defaults, marksKey, run), std::back_inserter(traces.marks),
                           marksFrom);
    return traces;
}

std::vector<Location> RunHistory::notRestored(const QUuid &run) const
{
    return remembered<PlacesOfRun>(m_defaults, notRestoredKey, run);
}

} // namespace brellin
