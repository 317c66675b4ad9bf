#pragma once

#include "Base/Location.h"

#include <QString>

#include <utility>

namespace brellin {

/// A line of the sidebar that leads somewhere.
struct SidebarChoice {
    enum class Kind {
        Quick,   ///< a pinned folder
        Tree,    ///< a folder of the tree below `root`
        Place,   ///< a volume
        Tag,     ///< everything with the tag `name`
        Trash,   ///< what lies in the Trash of every volume
        Photos,  ///< the photo library
        Network, ///< servers
        Agent    ///< the cleanup agent
    };
    Kind kind = Kind::Place;
    Location location; ///< of the first three
    Location root;     ///< of `Tree`
    QString name;      ///< of `Tag`

    bool operator==(const SidebarChoice &) const = default;

    bool isFolder() const { return kind == Kind::Quick || kind == Kind::Tree || kind == Kind::Place; }

    static SidebarChoice quick(Location folder) { return {Kind::Quick, std::move(folder), {}, {}}; }
    static SidebarChoice tree(Location root, Location folder)
    {
        return {Kind::Tree, std::move(folder), std::move(root), {}};
    }
    static SidebarChoice place(Location folder) { return {Kind::Place, std::move(folder), {}, {}}; }
    static SidebarChoice tag(QString name) { return {Kind::Tag, {}, {}, std::move(name)}; }
    static SidebarChoice special(Kind kind) { return {kind, {}, {}, {}}; }
};

} // namespace brellin
