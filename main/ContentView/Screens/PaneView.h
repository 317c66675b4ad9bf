#pragma once

#include "ContentView/Screens/DetailsView.h"
#include "ContentView/Screens/FileDrop.h"
#include "ContentView/Screens/IconsView.h"
#include "ContentView/Screens/SearchBar.h"
#include "Look/Labels.h"

#include <QStackedWidget>

class QMenu;
class QPushButton;

namespace brellin {

/// Shared services of the pane's screen; all must outlive it.
struct PaneScreenServices {
    UserDefaults &defaults;
    FolderSizes &sizes;
    const FolderColors &colors;
    ThumbnailImages *thumbnails; ///< null: no thumbnails
};

/// The screen of one pane: its entries as list or icons, or a message instead. Shows the model's state and emits the
/// user's actions.
class PaneView : public QWidget {
    Q_OBJECT
public:
    PaneView(BrowserModel &pane, PaneScreenServices services, QWidget *parent);

    ~PaneView() override;

    BrowserModel &pane() { return m_pane; }
    /// The visible view.
    QAbstractItemView &view() const;
    void setActive(bool active);
    /// Fades these entries, which pasting will move.
    void showCut(const std::set<Location> &entries);

    Q_SIGNAL void focused();
    /// Other columns were chosen; other views show them after `rereadColumns`.
    Q_SIGNAL void columnsChosen();
    void rereadColumns();
    /// Return or double click on entries that are not folders.
    Q_SIGNAL void openRequested(const std::vector<brellin::FileItem> &items);
    Q_SIGNAL void tabRequested(const brellin::Location &folder);
    /// Middle click on a folder.
    Q_SIGNAL void backgroundTabRequested(const brellin::Location &folder);
    /// Context menu for the selection, or for the folder if nothing is selected.
    Q_SIGNAL void menuRequested(const QPoint &global);
    /// Dropped on a folder in the list, or on the pane's own.
    Q_SIGNAL void dropped(const brellin::DroppedFiles &files);
    /// „Rechte zeigen“ for the entry of a failure.
    Q_SIGNAL void rightsWanted(const brellin::Location &entry);
    /// Esc, with nothing left to end in this pane.
    Q_SIGNAL void escaped();

    /// Focuses the list, or the message in its place.
    void focusList() { m_stack->currentWidget()->setFocus(); }
    /// Whether the beginning of a name is being typed, to jump to it.
    bool isTyping() const;
    /// Focuses the filters of a search; false if there is none.
    bool focusFilters();
    /// Focuses the list and selects its first row if nothing is selected.
    void focusFirst();

    /// Passes the views' selection on to the model; call before a command.
    void settle() { m_link->settle(); }
    /// Adds the choices of columns, sorting and grouping.
    void addArrangementTo(QMenu &menu);
    /// Shows them as a menu of their own, above the list.
    void showArrangement();

    /// Opens the selected entries; a single folder in this pane, several in tabs.
    void openSelection();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildViews();
    void buildBanner();
    void addRemedies();
    void apply(Remedy remedy);
    void tellPosition();
    void followPosition(const ViewPosition &wanted);
    bool keyPressed(const QKeyEvent &key, bool inView);
    void leaveFilters();
    bool endOne();
    QMenu *arrangementMenu();
    void link(QAbstractItemView *view);
    void takeDrops(QAbstractItemView *view);
    void showDrop(const std::optional<Location> &folder);
    void showMode(ViewMode mode);
    void showMessage();
    void open(const QModelIndex &index);
    void rename(const std::optional<FileItem> &item);
    void endRename();
    void showRefusal(const std::optional<QString> &reason);
    NameDelegate &names() const;

    BrowserModel &m_pane;
    ItemRows *m_rows;
    SelectionLink *m_link = nullptr;
    EntryPictures m_pictures;
    PaneScreenServices m_services;
    SearchBar *m_searchBar;
    QStackedWidget *m_stack;
    DetailsView *m_details = nullptr;
    IconsView *m_icons = nullptr;
    EmptyState *m_message = nullptr;
    QPushButton *m_goUp = nullptr; ///< shown if the folder is gone
    QWidget *m_banner = nullptr;
    TextLabel *m_bannerText = nullptr;
    QWidget *m_remedies = nullptr;
    bool m_moving = false; ///< the position follows the pane
};

} // namespace brellin
