#pragma once

#include "Places/Place.h"

namespace brellin {

class KnownFolders;

/// The selection in the sidebar.
struct SidebarItem {
    enum class Kind {
        Quick,   ///< a pinned folder
        Tree,    ///< a folder of the tree below `root`
        Place,   ///< a known folder or a volume
        Tag,     ///< entries with the tag `name`
        Device,  ///< the camera or phone called `name`
        Photos,  ///< the photo library
        Network, ///< network servers
        Agent    ///< the cleanup agent
    };
    Kind kind = Kind::Place;
    Location location; ///< for the first three
    Location root;     ///< for `Tree`
    QString name;      ///< for `Tag` and `Device`

    bool operator==(const SidebarItem &) const = default;

    static SidebarItem quick(Location folder) { return {Kind::Quick, std::move(folder), {}, {}}; }
    static SidebarItem tree(Location root, Location folder)
    {
        return {Kind::Tree, std::move(folder), std::move(root), {}};
    }
    static SidebarItem place(Location folder) { return {Kind::Place, std::move(folder), {}, {}}; }
    static SidebarItem tag(QString name) { return {Kind::Tag, {}, {}, std::move(name)}; }
    static SidebarItem device(QString name) { return {Kind::Device, {}, {}, std::move(name)}; }
    static SidebarItem photos() { return {Kind::Photos, {}, {}, {}}; }
    static SidebarItem network() { return {Kind::Network, {}, {}, {}}; }
    static SidebarItem agent() { return {Kind::Agent, {}, {}, {}}; }
};

/// The place that an item or a folder stands for. The user's Trash folder always maps to the Trash.
Place placeOf(const SidebarItem &item, const KnownFolders &folders);
Place placeOf(const Location &folder, const KnownFolders &folders);

} // namespace brellin
