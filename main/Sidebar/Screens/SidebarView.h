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

/// What the sidebar shows and edits. All outlive it.
struct SidebarSources {
    Pins &pins;
    FolderTree &tree; ///< its roots are set by the sidebar: "Benutzerordner" and every volume
    VolumeList &volumes;
    FolderColors &colors;
    FoldedSections &folded;
    const KnownFolders &folders;
    ThumbnailImages *images = nullptr; ///< for entries with a picture of their own
};

/// The sidebar: quick access, folders, volumes, network, tags, Trash, photos and assistants as one list for mouse and keys.
/// It says what was chosen; the window goes there.
class SidebarView : public QWidget {
    Q_OBJECT
public:
    SidebarView(SidebarSources sources, QWidget *parent);
    ~SidebarView() override;

    /// The active pane shows this: its line is highlighted (the one that was chosen where several lead there), and the tree
    /// opens down to a folder where no other line leads there. A search and an overview stand for their folder.
    void setCurrent(const Place &place);
    /// The red number of the agent; none for 0.
    void setAgentBadge(int number);
    /// Puts the keys into the list.
    void focusList();
    /// Where files can be dropped, and the folder that a point of it stands for; nothing beside the folders.
    QWidget *dropArea() const;
    std::optional<Location> folderAt(QPoint place) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    /// Clicked, or Return.
    Q_SIGNAL void chosen(const brellin::SidebarItem &choice);
    /// Middle click, Ctrl+Return, or "In neuem Tab öffnen".
    Q_SIGNAL void chosenForNewTab(const brellin::SidebarItem &choice);
    /// "Eigenschaften" of a folder. The menus have it as soon as somebody listens.
    Q_SIGNAL void propertiesWanted(const brellin::Location &folder);
    /// Something did not work; a German text for the window to show.
    Q_SIGNAL void failed(const QString &message);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace brellin
