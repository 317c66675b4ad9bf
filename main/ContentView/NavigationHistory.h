#pragma once

#include "Base/Location.h"

#include <optional>
#include <vector>

namespace brellin {

/// The back and forward stacks of a pane. A step is recorded only when the pane has arrived. A missing folder is
/// removed; one that does not respond changes nothing.
class NavigationHistory {
public:
    enum class Way { Back, Forward };

    /// The newest is last.
    const std::vector<Location> &back() const { return m_back; }
    const std::vector<Location> &forward() const { return m_forward; }
    std::optional<Location> next(Way way) const;

    /// Records leaving `left` for a chosen folder; clears the forward stack.
    void went(const Location &left);
    /// Records a step from `left` to `target`, which was `next(way)` when the step began.
    void stepped(Way way, const Location &target, const Location &left);
    /// Removes `target`, which was `next(way)`, because it is gone.
    void forget(Way way, const Location &target);

private:
    std::vector<Location> &stack(Way way) { return way == Way::Back ? m_back : m_forward; }

    std::vector<Location> m_back;
    std::vector<Location> m_forward;
};

} // namespace brellin
