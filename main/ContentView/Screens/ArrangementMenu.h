#pragma once

class QMenu;

namespace brellin {

class BrowserModel;

/// Adds „Sortieren nach“ and „Gruppieren nach“ of the pane, which must outlive the menu.
void addArrangement(QMenu &menu, BrowserModel &pane);

} // namespace brellin
