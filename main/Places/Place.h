#pragma once

#include "Base/Location.h"
#include "Places/SearchTerms.h"

#include <QString>

#include <utility>

namespace brellin {

/// What a pane shows: the entries of a folder, the results of a search or a tag, or a page in place of entries.
struct Place {
    enum class Kind {
        Folder,
        Search,  ///< results for `name` below `location`
        Tag,     ///< entries with the tag `name`
        Trash,   ///< of all volumes; `location` is the user's own Trash
        Photos,  ///< the photo library
        Network, ///< network servers
        Agent,   ///< the cleanup agent
        Device,  ///< the camera or phone called `name`
        Storage, ///< space used in the folder `location`
        History  ///< what the user and the agent did with files
    };
    Kind kind = Kind::Folder;
    Location location;      ///< standardised; for Folder, Search, Trash and Storage
    QString name;           ///< for Search, Tag and Device
    SearchTerms terms = {}; ///< for Search

    bool operator==(const Place &) const = default;

    /// A page without folder entries: nothing to select, search or rename.
    bool isPage() const { return kind == Kind::Trash || coversFolder(); }
    bool isSearchBelow(const Location &folder) const { return kind == Kind::Search && location == folder; }
    /// A page over the folder that was shown before, which remains the pane's folder.
    bool coversFolder() const { return kind >= Kind::Photos; }

    static Place folder(Location folder) { return {Kind::Folder, std::move(folder), {}}; }
    static Place search(Location below, QString query, const SearchTerms &terms = {})
    {
        return {Kind::Search, std::move(below), std::move(query), terms};
    }
    static Place tag(QString name) { return {Kind::Tag, {}, std::move(name)}; }
    static Place trash(Location folder) { return {Kind::Trash, std::move(folder), {}}; }
    static Place photos() { return {Kind::Photos, {}, {}}; }
    static Place network() { return {Kind::Network, {}, {}}; }
    static Place agent() { return {Kind::Agent, {}, {}}; }
    static Place device(QString name) { return {Kind::Device, {}, std::move(name)}; }
    static Place history() { return {Kind::History, {}, {}}; }
    static Place storage(Location folder) { return {Kind::Storage, std::move(folder), {}}; }
};

} // namespace brellin
