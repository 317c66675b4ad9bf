#include "Places/SidebarItem.h"

#include "Places/KnownFolders.h"

namespace brellin {

Place placeOf(const SidebarItem &item, const KnownFolders &folders)
{
    switch (item.kind) {
    case SidebarItem::Kind::Quick:
    case SidebarItem::Kind::Tree:
    case SidebarItem::Kind::Place:
        break;
    case SidebarItem::Kind::Tag:
        return Place::tag(item.name);
    case SidebarItem::Kind::Device:
        return Place::device(item.name);
    case SidebarItem::Kind::Photos:
        return Place::photos();
    case SidebarItem::Kind::Network:
        return Place::network();
    case SidebarItem::Kind::Agent:
        return Place::agent();
    }
    return placeOf(item.location, folders);
}

Place placeOf(const Location &folder, const KnownFolders &folders)
{
    Location target = standardised(folder);
    return target == folders.trash ? Place::trash(std::move(target)) : Place::folder(std::move(target));
}

} // namespace brellin
