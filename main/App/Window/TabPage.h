#pragma once

#include "App/Window/WindowServices.h"
#include "ContentView/Panes.h"
#include "ContentView/Screens/PaneView.h"
#include "ContentView/StoredWindows.h"

#include <QSplitter>
#include <QWidget>

namespace brellin {

class PaneHeading;

/// One tab with one or two panes side by side.
class TabPage : public QWidget {
    Q_OBJECT
public:
    TabPage(const WindowServices &services, const StoredTab &from, QWidget *parent);

    StoredTab stored() const;
    Panes &panes() { return m_panes; }
    BrowserModel &active() const { return *m_panes.active.get(); }
    PaneView &activeView() const;
    void focusActive();
    /// Makes the pane that contains the widget active; does nothing if none does.
    void activatePaneOf(const QWidget *inside);
    /// Focuses the other pane.
    void switchPane();
    /// Fades these entries, which pasting will move.
    void showCut(const std::set<Location> &entries);
    /// Exchanges the sides of two panes.
    void swapPanes();

    Q_SIGNAL void activeChanged();
    /// The user has moved the line between the panes.
    Q_SIGNAL void shareChanged();
    Q_SIGNAL void openRequested(const std::vector<brellin::FileItem> &items);
    Q_SIGNAL void tabRequested(const brellin::Location &folder);
    Q_SIGNAL void backgroundTabRequested(const brellin::Location &folder);
    Q_SIGNAL void menuRequested(const QPoint &global);
    Q_SIGNAL void rightsWanted(const brellin::Location &entry);
    Q_SIGNAL void escaped();
    /// The switch for two panes could not be stored.
    Q_SIGNAL void failed(const QString &message);
    Q_SIGNAL void dropped(const brellin::DroppedFiles &files, brellin::BrowserModel *pane);
    /// Emitted when the second pane was created.
    Q_SIGNAL void paneAdded(brellin::BrowserModel *pane);

private:
    /// A pane below its heading, which is shown if there are two.
    struct Side {
        QWidget *column = nullptr;
        PaneHeading *heading = nullptr;
        PaneView *view = nullptr;
    };

    void showSecond(bool shown);
    void closePane(BrowserModel &pane);
    void keepShare();
    Side addSide(BrowserModel &pane);
    PaneView *addView(BrowserModel &pane, QWidget *parent);
    Side activeSide() const;
    void showActive();

    WindowServices m_services;
    QUuid m_id;
    Panes m_panes;
    QSplitter *m_splitter;
    int m_share; ///< of the first pane's width, in thousandths
    std::set<Location> m_cut;
    Side m_first;
    Side m_second; ///< null if there is one pane
};

} // namespace brellin
