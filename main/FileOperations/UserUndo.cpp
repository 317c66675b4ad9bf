#include "FileOperations/UserUndo.h"

#include "Base/AbandonablePool.h"
#include "FileOperations/ProgressFraction.h"
#include "FileOperations/RecordedAction.h"

#include <algorithm>
#include <utility>

namespace brellin {

namespace {

constexpr auto patienceWithUndo = std::chrono::seconds(5);

std::vector<Location> placesOf(const std::vector<UserAction::Entry> &undone)
{
    std::vector<Location> places;
    for (const UserAction::Entry &entry : undone) {
        if (!entry.to.empty())
            places.push_back(entry.to);
    }
    return places;
}

QString statusOf(const UserAction &action, const UndoneAction &outcome)
{
    if (outcome.cancelled)
        return QStringLiteral("Abgebrochen.");
    const QString name = nameOf(action);
    if (outcome.undone.empty())
        return name + (action.undone ? QStringLiteral(" ließ sich nicht wiederholen.")
                                     : QStringLiteral(" ließ sich nicht rückgängig machen."));
    const QString partly = outcome.undone.size() < action.entries.size() ? QStringLiteral(" zum Teil") : QString();
    return name + partly + (action.undone ? QStringLiteral(" wiederholt.") : QStringLiteral(" rückgängig gemacht."));
}

} // namespace

UserUndo::UserUndo(UndoServices services) : m_services(std::move(services)), m_pool(abandonablePool(patienceWithUndo))
{
}

UserUndo::~UserUndo() = default;

void UserUndo::record(UserAction action)
{
    if (action.entries.empty())
        return;
    publishMoves(movesOf(action));
    m_again.clear();
    std::vector<UserAction> now = actions.get();
    now.insert(now.begin(), std::move(action));
    if (now.size() > mostActions)
        now.resize(mostActions);
    publishActions(std::move(now));
}

void UserUndo::forget(const UserAction &action)
{
    std::vector<EntryMove> back = movesOf(action);
    for (EntryMove &move : back)
        std::swap(move.from, move.to);
    publishMoves(std::move(back));
    std::vector<UserAction> now = actions.get();
    std::erase(now, action);
    publishActions(std::move(now));
}

void UserUndo::undoneElsewhere(const QUuid &step, const UndoneAction &outcome)
{
    publishMoves(outcome.moves);
    std::vector<UserAction> now = actions.get();
    const auto known = std::ranges::find(now, step, &UserAction::step);
    if (known == now.end() || outcome.undone.empty())
        return;
    known->entries = outcome.left;
    if (known->entries.empty())
        now.erase(known);
    publishActions(std::move(now));
}

void UserUndo::publishActions(std::vector<UserAction> now)
{
    publish(title, now.empty() ? std::nullopt : std::optional(undoTitle(now.front())));
    publish(redoTitle, m_again.empty() ? std::nullopt : std::optional(brellin::redoTitle(m_again.front())));
    publish(actions, std::move(now));
}

void UserUndo::publishMoves(std::vector<EntryMove> made)
{
    publish(moves, std::move(made));
    publish(moves, std::vector<EntryMove>());
}

void UserUndo::undo()
{
    if (!running.get() && !actions.get().empty())
        start(Way::Back, actions.get().front());
}

void UserUndo::redo()
{
    if (!running.get() && !m_again.empty())
        start(Way::Forth, m_again.front());
}

void UserUndo::start(Way way, const UserAction &action)
{
    m_way = way;
    publish(running, true);
    // The same entries may be undone again.
    publish(restored, std::vector<Location>());
    publish(undone, std::vector<UserAction::Entry>());
    publish(status, QString());
    publish(errorMessage, std::optional<QString>());
    m_job.start(
        *m_pool,
        [action, services = m_services](JobControl &control) { return undoRecorded(action, services, control); },
        [this, way, action](const UndoneAction &outcome) { finished(way, action, outcome); },
        [this](const JobControl &control) { publish(progress, progressFraction(control)); });
}

void UserUndo::finished(Way way, UserAction action, const UndoneAction &outcome)
{
    publishMoves(outcome.moves);
    std::vector<UserAction> now = actions.get();
    std::vector<UserAction> &source = way == Way::Back ? now : m_again;
    std::vector<UserAction> &other = way == Way::Back ? m_again : now;
    const auto place = std::ranges::find(source, action);
    // An action recorded meanwhile is newer and makes redo impossible.
    const bool undisturbed = place == source.begin() && place != source.end();
    const QString told = statusOf(action, outcome);
    action.entries = outcome.left;
    if (place != source.end() && outcome.left.empty())
        source.erase(place);
    else if (place != source.end())
        *place = std::move(action);
    if (outcome.again && (undisturbed || way == Way::Forth))
        other.insert(other.begin(), *outcome.again);
    publishActions(std::move(now));
    publish(progress, std::optional<double>());
    publish(restored, placesOf(outcome.undone));
    publish(undone, outcome.undone);
    if (!outcome.failures.isEmpty())
        publish(errorMessage, std::optional(linesOf(outcome.failures).join(u'\n')));
    publish(status, told);
    publish(running, false);
}

void UserUndo::dismissError()
{
    publish(errorMessage, std::optional<QString>());
}

} // namespace brellin
