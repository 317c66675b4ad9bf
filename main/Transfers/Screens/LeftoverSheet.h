#pragma once

#include "Base/Location.h"
#include "Look/Cards.h"

#include <vector>

namespace brellin {

/// Incomplete copies that a crash left in a folder: whether to remove them. Tells at most one `removeWanted`, then it goes.
class LeftoverSheet : public SheetFrame {
    Q_OBJECT
public:
    /// `leftovers`: entries of one folder.
    LeftoverSheet(const std::vector<Location> &leftovers, QWidget *window);

    /// Opens it with the keys on "Behalten".
    void ask();

    Q_SIGNAL void removeWanted();

private:
    QWidget *m_keep = nullptr;
};

} // namespace brellin
