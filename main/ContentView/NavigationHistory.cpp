#include "ContentView/NavigationHistory.h"

#include <algorithm>
#include <iterator>
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

void NavigationHistory::stepped(Way way, std::size_t steps, const PlaceVisit &target, PlaceVisit left)
{
    std::vector<PlaceVisit> &from = stack(way);
    std::vector<PlaceVisit> &onto = stack(way == Way::Back ? Way::Forward : Way::Back);
    onto.push_back(std::move(left));
    for (; steps > 1 && !from.empty(); --steps) {
        onto.push_back(std::move(from.back()));
        from.pop_back();
    }
    forget(way, target);
}

void NavigationHistory::forget(Way way, const PlaceVisit &target)
{
    std::vector<PlaceVisit> &visits = stack(way);
    const auto found = std::find_if(visits.rbegin(), visits.rend(), [&target](const PlaceVisit &one) {
        return one.place == target.place && one.folder == target.folder;
    });
    if (found != visits.rend())
        visits.erase(std::next(found).base());
}

} // namespace brellin
