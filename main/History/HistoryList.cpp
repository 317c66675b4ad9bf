#include "History/HistoryList.h"

#include "Base/AbandonablePool.h"
#include "FileOperations/OperationTexts.h"
#include "FileOperations/RecordedAction.h"

#include <algorithm>
#include <utility>

namespace brellin {

namespace {

constexpr auto patienceWithHistory = std::chrono::seconds(5);

std::vector<FoundTrail> found(const std::vector<HistoryStep> &steps, const QString &name, const Trash &trash,
                              const JobControl &control)
{
    std::vector<EntryTrail> trails = trailsOf(steps, name);
    trails.resize(std::min(trails.size(), HistoryList::mostTrails));
    std::vector<FoundTrail> all;
    for (EntryTrail &trail : trails) {
        if (control.cancelled())
            break;
        std::optional<Location> place = placeNow(trail, trash);
        const bool inTrash = place && trash.holds(*place);
        all.push_back({std::move(trail), std::move(place), inTrash});
    }
    return all;
}

/// What is made goes away from `to`, what is in the Trash comes back to `from`; anything else is at both.
bool mayTakeBack(const UserAction &action, const std::function<bool(const Location &)> &mayChange)
{
    const bool made = action.kind == StepKind::Copy || action.kind >= StepKind::NewFolder;
    return !mayChange || std::ranges::all_of(action.entries, [&](const UserAction::Entry &entry) {
        const bool there = action.kind == StepKind::Trash || mayChange(entry.to);
        return there && (made || mayChange(entry.from));
    });
}

UndoneAction refusal(const QString &why)
{
    UndoneAction undone;
    undone.failures << EntryFailure{{}, {why, {}}};
    return undone;
}

} // namespace

HistoryList::HistoryList(HistoryServices services)
    : m_services(std::move(services))
    , m_pool(abandonablePool(patienceWithHistory))
{
    m_services.session.actions.observe(this, [this](const auto &) { publish(changes, changes.get() + 1); });
}

HistoryList::~HistoryList() = default;

void HistoryList::reload()
{
    const bool started = m_reading.start(
        *m_pool,
        [&records = m_services.records, &defaults = m_services.defaults](JobControl &) {
            KeptSteps kept = records.read();
            const RunHistory history(defaults);
            return Read{historyOf(kept.steps, history.runs(), history), std::move(kept.condition)};
        },
        [this](const Read &read) {
            publish(steps, read.steps);
            publish(damage, read.condition.isWhole() ? std::nullopt : std::optional(read.condition));
            publish(loading, false);
            if (std::exchange(m_readAgain, false))
                reload();
            else
                startSearch();
        });
    m_readAgain = !started;
    publish(loading, true);
}

void HistoryList::search(const QString &name)
{
    m_wanted = name.trimmed();
    startSearch();
}

/// A search that waits for a volume that does not answer holds up no other.
void HistoryList::startSearch()
{
    m_searching.reset();
    publish(searching, !m_wanted.isEmpty());
    if (m_wanted.isEmpty()) {
        publish(trails, std::vector<FoundTrail>());
        publish(searched, m_wanted);
        return;
    }
    m_searching = std::make_unique<Job<std::vector<FoundTrail>>>();
    m_searching->start(
        *m_pool,
        [all = steps.get(), name = m_wanted, &trash = m_services.undo.trash](const JobControl &control) {
            return found(all, name, trash, control);
        },
        [this, name = m_wanted](std::vector<FoundTrail> answer) {
            publish(trails, std::move(answer));
            publish(searched, name);
            publish(searching, false);
        });
}

HistoryList::TakenBack HistoryList::takeBackNow(const HistoryServices &services, const QUuid &step, JobControl &control)
{
    const KeptSteps kept = services.records.read();
    const auto known = std::ranges::find(kept.steps, step, &RecordedStep::id);
    const UserAction action = known == kept.steps.end() ? UserAction() : actionOf(*known);
    if (action.entries.empty())
        return {step, {}, refusal(QStringLiteral("Dieser Schritt ist schon rückgängig gemacht oder vergessen."))};
    const QString title = undoTitle(action);
    if (!mayTakeBack(action, services.mayChange))
        return {step, title, refusal(operationTexts::systemRefusal())};
    return {step, title, undoRecorded(action, services.undo, control)};
}

void HistoryList::takeBack(const QUuid &step)
{
    const bool started = m_takingBack.start(
        *m_pool, [services = m_services, step](JobControl &control) { return takeBackNow(services, step, control); },
        [this](const TakenBack &outcome) { tookBack(outcome); });
    if (!started)
        return;
    publish(takingBack, true);
    // The same entries may be taken back again.
    publish(undone, std::vector<UserAction::Entry>());
}

void HistoryList::tookBack(const TakenBack &outcome)
{
    m_services.session.undoneElsewhere(outcome.step, outcome.undone);
    const QStringList lines = linesOf(outcome.undone.failures);
    publish(status, QString());
    publish(failures, lines);
    if (outcome.undone.undone.empty())
        publish(status, QStringLiteral("Das ließ sich nicht rückgängig machen."));
    else
        publish(status, outcome.title + (lines.isEmpty() ? QStringLiteral(" gemacht.")
                                                         : QStringLiteral(" gemacht, aber nicht alles.")));
    publish(undone, outcome.undone.undone);
    publish(takingBack, false);
    reload();
}

void HistoryList::clear()
{
    m_clearing.start(
        *m_pool, [&records = m_services.records](JobControl &) { return records.clear(); },
        [this](const Result<void> &cleared) {
            publish(failures, cleared ? QStringList() : QStringList(cleared.error().message));
            publish(status, cleared ? QStringLiteral("Der Verlauf ist leer.")
                                    : QStringLiteral("Der Verlauf ließ sich nicht leeren."));
            reload();
        });
}

bool HistoryList::on() const
{
    return StepRecords::setting.isOn(m_services.defaults);
}

void HistoryList::setOn(bool on)
{
    if (const Result<void> kept = m_services.defaults.setValue(StepRecords::setting.key, on); !kept) {
        publish(failures, QStringList(kept.error().message));
        publish(status, QStringLiteral("Das ließ sich nicht speichern."));
    }
}

} // namespace brellin
