#pragma once

#include "Places/SidebarItem.h"

#include <QColor>
#include <QString>
#include <QUuid>

#include <optional>

namespace brellin {

/// One line of the sidebar.
struct SidebarRow {
    enum class Kind {
        Section, ///< a head that folds what follows
        Gap,     ///< the head of a group without a name
        Quick,
        Folder,
        Volume,
        Place ///< network, tag, Trash, photos, agent
    };
    Kind kind = Kind::Place;
    QString key; ///< what the line is, from one reading to the next; of a section also its stored name
    QString title;
    std::optional<SidebarItem> choice; ///< none for a head
    QString toolTip;

    QString symbol;
    std::optional<QColor> color;   ///< of the symbol, the folder or, without a symbol, the dot
    std::optional<Location> image; ///< drawn instead of the symbol
    QUuid entry;                   ///< of the quick access
    std::optional<QString> colorName;

    int depth = 0;           ///< of a folder
    bool expandable = false; ///< a folder with folders in it
    bool expanded = false;   ///< a folder or a section
    bool loading = false;

    QString note;               ///< at the right: "212 GB frei"
    std::optional<double> used; ///< share of a volume, 0 … 1
    bool ejectable = false;
    int badge = 0;

    bool isHead() const { return kind == Kind::Section || kind == Kind::Gap; }
    bool operator==(const SidebarRow &) const = default;
};

} // namespace brellin
