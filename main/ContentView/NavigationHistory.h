#pragma once

#include "Base/Location.h"
#include "ContentView/Selection.h"
#include "Places/Place.h"

#include <optional>
#include <vector>

namespace brellin {

/// Current row and scroll position of a view.
struct ViewPosition {
    Location current;          ///< empty: no current row
    std::optional<int> scroll; ///< pixels; absent: scrolls to the current row

    bool operator==(const ViewPosition &) const = default;
};

/// A place that a pane showed and how it looked when the user left it.
struct PlaceVisit {
    Place place;
    Location folder; ///< the pane's folder, also below results and pages
    Selection selected = {};
    ViewPosition position = {};
};

/// The back and forward stacks of a pane. A step is recorded only when the pane has arrived. A place whose folder is
/// missing is removed; one that does not respond changes nothing.
class NavigationHistory {
public:
    enum class Way { Back, Forward };

    /// The stack of folders alone, newest last: results and pages shown over a folder are no steps of it.
    std::vector<Location> folders(Way way, const Location &current) const;
    bool empty(Way way) const { return stack(way).empty(); }
    /// All steps, newest last.
    const std::vector<PlaceVisit> &visits(Way way) const { return stack(way); }
    std::optional<PlaceVisit> next(Way way) const;

    /// Records leaving `left` for a chosen place; clears the forward stack.
    void went(PlaceVisit left);
    /// Records going `steps` from `left` to `target`, which was that far away when the step began.
    void stepped(Way way, std::size_t steps, const PlaceVisit &target, PlaceVisit left);
    /// Removes `target` because it is gone.
    void forget(Way way, const PlaceVisit &target);

private:
    std::vector<PlaceVisit> &stack(Way way) { return way == Way::Back ? m_back : m_forward; }
    const std::vector<PlaceVisit> &stack(Way way) const { return way == Way::Back ? m_back : m_forward; }

    std::vector<PlaceVisit> m_back;
    std::vector<PlaceVisit> m_forward;
};

} // namespace brellin
