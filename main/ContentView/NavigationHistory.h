#pragma once

#include "Base/Location.h"

#include <optional>
#include <vector>

namespace brellin {

/// The folders that a pane can go back to and, once it has gone back, forward to. A step is entered when the pane has
/// arrived: a folder that is gone is taken out instead, and what does not answer changes nothing.
class NavigationHistory {
public:
    enum class Way { Back, Forward };

    /// Newest last.
    const std::vector<Location> &back() const { return m_back; }
    const std::vector<Location> &forward() const { return m_forward; }
    std::optional<Location> next(Way way) const;

    /// From `left` to a folder that was chosen: nothing lies forward any more.
    void went(const Location &left);
    /// One step along the history, from `left` to `next(way)`, which was `target` when it began.
    void stepped(Way way, const Location &target, const Location &left);
    /// `target`, which was `next(way)`, is gone.
    void forget(Way way, const Location &target);

private:
    std::vector<Location> &stack(Way way) { return way == Way::Back ? m_back : m_forward; }

    std::vector<Location> m_back;
    std::vector<Location> m_forward;
};

} // namespace brellin
