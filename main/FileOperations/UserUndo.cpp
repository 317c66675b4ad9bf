#include "FileOperations/UserUndo.h"

#include "Base/AbandonablePool.h"
#include "FileOperations/ProgressFraction.h"

#include <algorithm>
#include <utility>

namespace brellin {

namespace {

constexpr auto patienceAtTheEnd = std::chrono::seconds(5);

std::vector<Location> placesOf(const std::vector<UserAction::Entry> &undone)
{
    std::vector<Location> places;
    for (const UserAction::Entry &entry : undone) {
        if (!entry.to.empty())
            places.push_back(entry.to);
    }
    return places;
}

} // namespace

UserUndo::UserUndo(UndoServices services) : m_services(std::move(services)), m_pool(abandonablePool(patienceAtTheEnd))
{
}

UserUndo::~UserUndo() = default;

void UserUndo::record(UserAction action)
{
    if (action.entries.empty())
        return;
    std::vector<UserAction> now = actions.get();
    now.insert(now.begin(), std::move(action));
    if (now.size() > mostActions)
        now.resize(mostActions);
    publishActions(std::move(now));
}

void UserUndo::forget(const UserAction &action)
{
    std::vector<UserAction> now = actions.get();
    std::erase(now, action);
    publishActions(std::move(now));
}

void UserUndo::publishActions(std::vector<UserAction> now)
{
    publish(title, now.empty() ? std::nullopt : std::optional(undoTitle(now.front())));
    publish(actions, std::move(now));
}

void UserUndo::undo()
{
    if (running.get() || actions.get().empty())
        return;
    const UserAction action = actions.get().front();
    publish(running, true);
    publish(errorMessage, std::optional<QString>());
    m_job.start(
        *m_pool, [action, services = m_services](JobControl &control) { return undoAction(action, services, control); },
        [this, action](const UndoneAction &outcome) { finished(action, outcome); },
        [this](const JobControl &control) { publish(progress, progressFraction(control)); });
}

void UserUndo::finished(UserAction action, const UndoneAction &outcome)
{
    // Meanwhile the user may have done something else, which stands before it.
    std::vector<UserAction> now = actions.get();
    const auto place = std::ranges::find(now, action);
    action.entries = outcome.left;
    if (place != now.end() && outcome.left.empty())
        now.erase(place);
    else if (place != now.end())
        *place = std::move(action);
    publishActions(std::move(now));
    publish(progress, std::optional<double>());
    publish(restored, placesOf(outcome.undone));
    if (!outcome.failures.isEmpty())
        publish(errorMessage, std::optional(outcome.failures.join(u'\n')));
    publish(status, outcome.cancelled        ? QStringLiteral("Abgebrochen.")
                    : outcome.left.empty()   ? QStringLiteral("Rückgängig gemacht.")
                    : outcome.undone.empty() ? QStringLiteral("Das ließ sich nicht rückgängig machen.")
                                             : QStringLiteral("Zum Teil rückgängig gemacht."));
    publish(running, false);
}

void UserUndo::dismissError()
{
    publish(errorMessage, std::optional<QString>());
}

} // namespace brellin
