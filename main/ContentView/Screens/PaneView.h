#pragma once

#include "ContentView/Screens/DetailsView.h"
#include "ContentView/Screens/FileDrop.h"
#include "ContentView/Screens/IconsView.h"
#include "Look/Labels.h"

#include <QStackedWidget>

namespace brellin {

/// What a pane's screen works with beside its model; all of it outlives the screen.
struct PaneScreenServices {
    UserDefaults &defaults;
    FolderSizes &sizes;
    const FolderColors &colors;
    ThumbnailImages *thumbnails; ///< none: no small pictures
};

/// One pane: its entries as a list or as tiles, or what is said instead of them. Shows its model's state, and passes on
/// what the user does.
class PaneView : public QWidget {
    Q_OBJECT
public:
    PaneView(BrowserModel &pane, PaneScreenServices services, QWidget *parent);

    ~PaneView() override;

    BrowserModel &pane() { return m_pane; }
    /// The view that is shown.
    QAbstractItemView &view() const;
    void setActive(bool active);

    Q_SIGNAL void focused();
    /// Enter or a double click on entries that are no folders.
    Q_SIGNAL void openRequested(const std::vector<brellin::FileItem> &items);
    Q_SIGNAL void tabRequested(const brellin::Location &folder);
    /// A menu for the selection, or for the folder where nothing is selected.
    Q_SIGNAL void menuRequested(const QPoint &global);
    /// Onto a folder of the list, or onto the pane's own.
    Q_SIGNAL void dropped(const brellin::DroppedFiles &files);

    /// The pane knows what is selected from now on; to be called before a command.
    void settle() { m_link->settle(); }
    /// Opens the selected entries: one folder in this pane, more in tabs.
    void openSelection();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildViews();
    void buildBanner();
    void link(QAbstractItemView *view);
    void takeDrops(QAbstractItemView *view);
    void showDrop(const std::optional<Location> &folder);
    void showMode(ViewMode mode);
    void showMessage();
    void open(const QModelIndex &index);
    void rename(const std::optional<FileItem> &item);
    void endRename();

    BrowserModel &m_pane;
    ItemRows *m_rows;
    SelectionLink *m_link = nullptr;
    EntryPictures m_pictures;
    PaneScreenServices m_services;
    QStackedWidget *m_stack;
    DetailsView *m_details = nullptr;
    IconsView *m_icons = nullptr;
    EmptyState *m_message = nullptr;
    QWidget *m_banner = nullptr;
    TextLabel *m_bannerText = nullptr;
};

} // namespace brellin
