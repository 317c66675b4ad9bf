#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/EntryPlace.h"
#include "Disk/FileAttributes.h"

#include <optional>
#include <string>
#include <string_view>

namespace brellin {

/// Where a Trash is, or would be.
struct TrashPlace {
    enum class Kind {
        Home,   ///< the user's, for the home volume
        Shared, ///< "$topdir/.Trash/$uid", below a folder that an administrator made for everybody
        Own     ///< "$topdir/.Trash-$uid"
    };
    Kind kind = Kind::Home;
    Location folder; ///< holds "files" and "info"
    Location top;    ///< the volume's top, to which stored origins are relative (not in the home Trash)

    static TrashPlace home(const Location &folder) { return {Kind::Home, folder, {}}; }
    static TrashPlace shared(const Location &top);
    static TrashPlace own(const Location &top);

    /// A stored origin as an absolute path.
    Location absolute(const std::string &origin) const { return top / origin; }
};

enum class Missing { Fail, Create };

/// A Trash held open: its two folders, checked to be genuine.
class TrashFolder {
public:
    /// Of a Trash on a volume every folder must be no link and belong to this user, a shared one must be protected by
    /// the sticky bit: else somebody else could read or take what is put in.
    static Result<TrashFolder> open(const TrashPlace &place, Missing missing);

    /// Whether `open` with `Missing::Create` would work, as far as permissions tell. Creates nothing.
    static bool usable(const TrashPlace &place);

    /// Writes the record, then renames the entry in: the entry never is in the Trash without its record. Gives its name
    /// there.
    Result<std::string> take(NameIn entry, std::string_view origin) const;

    /// Renames `name` out to a free place, then removes its record.
    Result<void> give(const std::string &name, NameIn destination) const;

    /// The origin in the record of `name`, nullopt where there is none that can be read.
    std::optional<std::string> originOf(const std::string &name) const;

    /// The text of that record.
    std::optional<std::string> recordOf(const std::string &name) const;

    /// The names of all entries.
    std::vector<std::string> names() const;

    /// The entries' names whose identity is this one (several where it has hard links).
    std::vector<std::string> namesOf(const FileIdentity &identity) const;

private:
    /// The descriptor and name of a new, empty record: that reserves the entry's name.
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
