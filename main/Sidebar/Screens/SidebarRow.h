#pragma once

#include "Places/SidebarItem.h"

#include <QColor>
#include <QString>
#include <QUuid>

#include <optional>

namespace brellin {

/// One row of the sidebar.
struct SidebarRow {
    enum class Kind {
        Section, ///< head of a foldable section
        Gap,     ///< space before a group without a title
        Quick,
        Folder,
        Volume,
        Place ///< network, tag, Trash, photos or agent
    };
    Kind kind = Kind::Place;
    QString key; ///< stable across rebuilds; for a section also its stored name
    QString title;
    std::optional<SidebarItem> choice; ///< where it leads; none for a head
    QString toolTip;

    QString symbol;
    std::optional<QColor> color;   ///< of the symbol, the folder, or the dot if there is no symbol
    std::optional<Location> image; ///< shown instead of the symbol
    QUuid entry;                   ///< ID in the quick access
    std::optional<QString> colorName;

    int depth = 0;           ///< for folders
    bool expandable = false; ///< a folder that may have subfolders
    bool expanded = false;   ///< for folders and sections
    bool loading = false;

    QString note;               ///< at the right, e.g. "212 GB frei"
    std::optional<double> used; ///< used share of a volume, 0 to 1
    bool ejectable = false;
    int badge = 0;

    bool isHead() const { return kind == Kind::Section || kind == Kind::Gap; }
    bool operator==(const SidebarRow &) const = default;
};

} // namespace brellin
