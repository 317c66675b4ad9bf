#pragma once

#include "ContentView/BrowserModel.h"
#include "ContentView/StoredWindows.h"

#include <memory>

namespace brellin {

/// The one or two panes of a tab. Commands act on the active one, which had the focus last.
class Panes : public Model<Panes> {
public:
    /// Shows `start` in one pane, or in two if the setting "dualPane" is on.
    Panes(const BrowserServices &services, const Location &start);
    /// Restores a tab.
    Panes(const BrowserServices &services, const StoredTab &stored);

    Published<bool> dualPane;
    Published<BrowserModel *> active; ///< never null

    BrowserModel &first() const { return *m_first; }
    /// Null if there is one pane.
    BrowserModel *second() const { return m_second.get(); }

    /// Opens a second pane in the first one's folder, or closes it, and stores that as the default. If it cannot be
    /// stored, switches this tab only and returns the failure.
    Result<void> setDualPane(bool on);
    /// Exchanges the panes' sides. Each keeps what it shows and selects, the active one stays active.
    void swap();
    /// Call when a pane gets the focus; others than the tab's own are ignored.
    void setActive(BrowserModel *pane);

private:
    void openSecond(const Location &start);
    void closeSecond();

    BrowserServices m_services;
    std::unique_ptr<BrowserModel> m_first;
    std::unique_ptr<BrowserModel> m_second;
};

} // namespace brellin
