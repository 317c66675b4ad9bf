#pragma once

#include "Places/SidebarItem.h"

#include <QWidget>

#include <memory>
#include <optional>

namespace brellin {

class FolderColors;
class FolderTree;
class FoldedSections;
class KnownFolders;
class Pins;
class ThumbnailImages;
class VolumeList;

/// The models that the sidebar shows and edits. All must outlive it.
struct SidebarSources {
    Pins &pins;
    FolderTree &tree; ///< roots are set by the sidebar: "Benutzerordner" and every volume
    VolumeList &volumes;
    FolderColors &colors;
    FoldedSections &folded;
    const KnownFolders &folders;
    ThumbnailImages *images = nullptr; ///< for entries with a picture
};

/// The sidebar: quick access, folders, volumes and network in a list that scrolls; below it tags, Trash and agent, which
/// stay on the screen. Emits what was chosen; the window navigates.
class SidebarView : public QWidget {
    Q_OBJECT
public:
    SidebarView(SidebarSources sources, QWidget *parent);
    ~SidebarView() override;

    /// Highlights the row of the active pane's place; of several, the one clicked last. If only the tree can show the
    /// folder, expands the tree to it; collapses what it so expanded for another. A search or an overview counts as its folder.
    void setCurrent(const Place &place);
    /// Sets the agent's badge; hidden for 0.
    void setAgentBadge(int number);
    /// Focuses the list.
    void focusList();
    /// The widget that accepts file drops, and the folder at a point of it; none for rows that are not folders.
    QWidget *dropArea() const;
    std::optional<Location> folderAt(QPoint place) const;
    /// Marks the row at this point of it as the target of a drag; none unmarks.
    void showDropAt(std::optional<QPoint> place);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    /// By click or Return.
    Q_SIGNAL void chosen(const brellin::SidebarItem &choice);
    /// By middle click, Ctrl+Return or "In neuem Tab öffnen": in the background.
    Q_SIGNAL void chosenForNewTab(const brellin::SidebarItem &choice);
    /// "Eigenschaften" of a folder. The menu offers it only if this signal is connected.
    Q_SIGNAL void propertiesWanted(const brellin::Location &folder);
    /// A failure as a German text for the window to show.
    Q_SIGNAL void failed(const QString &message);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace brellin
