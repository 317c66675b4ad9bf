#pragma once

#include "ContentView/ItemOrder.h"

class QMenu;

namespace brellin {

class BrowserModel;

/// „Geändert“
QString titleOf(SortKey key);

/// Adds „Sortieren nach“ and „Gruppieren nach“ of the pane, which must outlive the menu.
void addArrangement(QMenu &menu, BrowserModel &pane);

} // namespace brellin
