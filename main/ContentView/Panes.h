#pragma once

#include "ContentView/BrowserModel.h"

#include <memory>

namespace brellin {

/// The one or two panes of a tab, and which of them the commands act on: the one that had the focus last.
class Panes : public Model<Panes> {
public:
    /// Shows `start`; two panes where the user default "dualPane" says so.
    Panes(const BrowserServices &services, const Location &start);
    /// The same for a tab that comes back with its second pane.
    Panes(const BrowserServices &services, const Location &start, const Location &second);

    Published<bool> dualPane;
    Published<BrowserModel *> active; ///< never null

    BrowserModel &first() const { return *m_first; }
    /// Null with one pane.
    BrowserModel *second() const { return m_second.get(); }

    /// The second pane starts in the folder of the first, and goes when it is switched off. Kept as the user's default; where it
    /// cannot be stored, the switch works for this tab alone, and that is the failure.
    Result<void> setDualPane(bool on);
    /// The focus has come to one of them.
    void setActive(BrowserModel *pane);

private:
    void openSecond(const Location &start);
    void closeSecond();

    BrowserServices m_services;
    std::unique_ptr<BrowserModel> m_first;
    std::unique_ptr<BrowserModel> m_second;
};

} // namespace brellin
