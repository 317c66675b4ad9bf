#pragma once

#include "Base/Location.h"
#include "Look/SheetFrame.h"

#include <vector>

namespace brellin {

/// Offers to remove incomplete copies that a crash left in a folder. Emits `removeWanted` at most once, then closes.
class LeftoverSheet : public SheetFrame {
    Q_OBJECT
public:
    /// `leftovers` must be entries of one folder.
    LeftoverSheet(const std::vector<Location> &leftovers, QWidget *window);

    /// Opens the sheet with "Behalten" focused.
    void ask();

    Q_SIGNAL void removeWanted();

private:
    QWidget *m_keep = nullptr;
};

} // namespace brellin
