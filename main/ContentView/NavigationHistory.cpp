#include "ContentView/NavigationHistory.h"

#include <utility>

namespace brellin {

std::vector<Location> NavigationHistory::folders(Way way, const Location &current) const
{
    std::vector<Location> all;
    for (const PlaceVisit &visit : stack(way)) {
        if (all.empty() || all.back() != visit.folder)
            all.push_back(visit.folder);
    }
    if (!all.empty() && all.back() == current)
        all.pop_back();
    return all;
}

std::optional<PlaceVisit> NavigationHistory::next(Way way) const
{
    const std::vector<PlaceVisit> &visits = stack(way);
    return visits.empty() ? std::nullopt : std::optional(visits.back());
}

void NavigationHistory::went(PlaceVisit left)
{
    m_back.push_back(std::move(left));
    m_forward.clear();
}

void NavigationHistory::stepped(Way way, const PlaceVisit &target, PlaceVisit left)
{
    forget(way, target);
    stack(way == Way::Back ? Way::Forward : Way::Back).push_back(std::move(left));
}

void NavigationHistory::forget(Way way, const PlaceVisit &target)
{
    std::vector<PlaceVisit> &visits = stack(way);
    if (!visits.empty() && visits.back().place == target.place && visits.back().folder == target.folder)
        visits.pop_back();
}

} // namespace brellin
