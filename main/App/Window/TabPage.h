#pragma once

#include "App/Window/WindowServices.h"
#include "ContentView/Panes.h"
#include "ContentView/Screens/PaneView.h"
#include "ContentView/TabTarget.h"

#include <QSplitter>
#include <QWidget>

namespace brellin {

/// One tab with one or two panes side by side.
class TabPage : public QWidget {
    Q_OBJECT
public:
    TabPage(const WindowServices &services, const TabTarget &target, const std::optional<Location> &second,
            QWidget *parent);

    const QUuid &id() const { return m_id; }
    Panes &panes() { return m_panes; }
    BrowserModel &active() const { return *m_panes.active.get(); }
    PaneView &activeView() const;
    void focusActive();
    /// Makes the pane that contains the widget active; does nothing if none does.
    void activatePaneOf(const QWidget *inside);
    /// Focuses the other pane.
    void switchPane();

    Q_SIGNAL void activeChanged();
    Q_SIGNAL void openRequested(const std::vector<brellin::FileItem> &items);
    Q_SIGNAL void tabRequested(const brellin::Location &folder);
    Q_SIGNAL void backgroundTabRequested(const brellin::Location &folder);
    Q_SIGNAL void menuRequested(const QPoint &global);
    Q_SIGNAL void rightsWanted(const brellin::Location &entry);
    Q_SIGNAL void escaped();
    Q_SIGNAL void dropped(const brellin::DroppedFiles &files, brellin::BrowserModel *pane);
    /// Emitted when the second pane was created.
    Q_SIGNAL void paneAdded(brellin::BrowserModel *pane);

private:
    void showSecond(bool shown);
    PaneView *addView(BrowserModel &pane);
    void showActive();

    WindowServices m_services;
    QUuid m_id;
    Panes m_panes;
    QSplitter *m_splitter;
    PaneView *m_first;
    PaneView *m_second = nullptr;
};

} // namespace brellin
