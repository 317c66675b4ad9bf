#pragma once

#include "Base/Location.h"

#include <QString>

#include <utility>

namespace brellin {

/// What a pane shows: the entries of a folder, what a search or a tag found, or a page that stands where entries would.
struct Place {
    enum class Kind {
        Folder,
        Search,  ///< what is called `name` below `location`
        Tag,     ///< everything with the tag `name`
        Trash,   ///< of every volume; `location` is the user's own
        Photos,  ///< the photo library
        Network, ///< servers
        Agent,   ///< the cleanup agent
        Device,  ///< the camera or phone called `name`
        Storage  ///< what takes up the space of the folder `location`
    };
    Kind kind = Kind::Folder;
    Location location; ///< standardised; of Folder, Search, Trash and Storage
    QString name;      ///< of Search, Tag and Device

    bool operator==(const Place &) const = default;

    /// No entries of a folder to select, search or rename: a page of its own is shown.
    bool isPage() const { return kind == Kind::Trash || coversFolder(); }
    /// A page over the folder that the pane was in, which stays its folder.
    bool coversFolder() const { return kind >= Kind::Photos; }

    static Place folder(Location folder) { return {Kind::Folder, std::move(folder), {}}; }
    static Place search(Location below, QString query) { return {Kind::Search, std::move(below), std::move(query)}; }
    static Place tag(QString name) { return {Kind::Tag, {}, std::move(name)}; }
    static Place trash(Location folder) { return {Kind::Trash, std::move(folder), {}}; }
    static Place photos() { return {Kind::Photos, {}, {}}; }
    static Place network() { return {Kind::Network, {}, {}}; }
    static Place agent() { return {Kind::Agent, {}, {}}; }
    static Place device(QString name) { return {Kind::Device, {}, std::move(name)}; }
    static Place storage(Location folder) { return {Kind::Storage, std::move(folder), {}}; }
};

} // namespace brellin
