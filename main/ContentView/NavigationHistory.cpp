#include "ContentView/NavigationHistory.h"

namespace brellin {

std::optional<Location> NavigationHistory::next(Way way) const
{
    const std::vector<Location> &folders = way == Way::Back ? m_back : m_forward;
    return folders.empty() ? std::nullopt : std::optional(folders.back());
}

void NavigationHistory::went(const Location &left)
{
    m_back.push_back(left);
    m_forward.clear();
}

void NavigationHistory::stepped(Way way, const Location &target, const Location &left)
{
    forget(way, target);
    stack(way == Way::Back ? Way::Forward : Way::Back).push_back(left);
}

void NavigationHistory::forget(Way way, const Location &target)
{
    std::vector<Location> &folders = stack(way);
    if (!folders.empty() && folders.back() == target)
        folders.pop_back();
}

} // namespace brellin
