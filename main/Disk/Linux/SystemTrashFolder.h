#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/EntryPlace.h"
#include "Disk/FileAttributes.h"

#include <optional>
#include <string>
#include <string_view>

namespace brellin {

/// The location of a Trash, which may not exist.
struct TrashPlace {
    enum class Kind {
        Home,   ///< the user's Trash for the home volume
        Shared, ///< "$topdir/.Trash/$uid", in a folder created by an administrator
        Own     ///< "$topdir/.Trash-$uid"
    };
    Kind kind = Kind::Home;
    Location folder; ///< contains "files" and "info"
    Location top;    ///< the volume's top, to which stored origins are relative; empty for the home Trash

    static TrashPlace home(const Location &folder) { return {Kind::Home, folder, {}}; }
    static TrashPlace shared(const Location &top);
    static TrashPlace own(const Location &top);

    /// The absolute path of a stored origin.
    Location absolute(const std::string &origin) const { return top / origin; }
};

enum class Missing { Fail, Create };

/// An open Trash: its two folders, checked.
class TrashFolder {
public:
    /// On volumes every folder must be no link and belong to this user, and a shared one must have the sticky bit:
    /// otherwise others could read or take its content.
    static Result<TrashFolder> open(const TrashPlace &place, Missing missing);

    /// Whether `open` with `Missing::Create` would succeed, judging by permissions. Creates nothing.
    static bool usable(const TrashPlace &place);

    /// Writes the record, then renames the entry in, so that it is never in the Trash without its record. Returns its
    /// name there.
    Result<std::string> take(NameIn entry, std::string_view origin) const;

    /// Renames `name` out to a free place, then removes its record.
    Result<void> give(const std::string &name, NameIn destination) const;

    /// The origin in the record of `name`; none if there is no readable record.
    std::optional<std::string> originOf(const std::string &name) const;

    /// The text of the record.
    std::optional<std::string> recordOf(const std::string &name) const;

    /// The names of all entries.
    std::vector<std::string> names() const;

    /// Names of entries with this identity; several if it has hard links.
    std::vector<std::string> namesOf(const FileIdentity &identity) const;

private:
    /// A new, empty record that reserves the entry's name.
    struct Record {
        std::string name;
        Descriptor file;
    };
    Result<Record> reserve(std::string_view wanted) const;
    Result<void> fill(const Record &record, NameIn entry, std::string_view origin) const;

    Descriptor m_files;
    Descriptor m_info;
};

} // namespace brellin
