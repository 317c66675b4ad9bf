#pragma once

#include "Base/Instant.h"
#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/EntryDetails.h"
#include "Disk/FileAttributes.h"

#include <QString>
#include <QStringList>

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace brellin {

/// Whether an entry is a symlink, and whether its target exists.
enum class LinkState : std::uint8_t { None, Leads, Broken };

/// One listed entry. Kept small, since a folder may hold a million of them: the folder's path is shared, and the
/// entry's path is composed on demand.
///
/// A link to a folder counts as a folder; size and time are the link's own.
struct FileItem {
    std::shared_ptr<const std::string> folder; ///< path of the containing folder; never null in a listing
    std::string nameBytes;
    bool isFolder = false; ///< also for a link to a folder
    bool isHidden = false; ///< leading dot, or listed in the folder's `.hidden`
    LinkState link = LinkState::None;
    std::int64_t size = 0; ///< in bytes; 0 if unknown
    Instant modified = Instant::min();
    QString kind;         ///< e.g. "PDF-Dokument", "Ordner", "Datei"
    QStringList tags;     ///< tag names; none for links
    EntryDetails details; ///< default values if they were not asked for

    /// Names of the attributes read for each entry.
    static constexpr std::array<std::string_view, 7> keys{"isFolder", "isPackage", "isHidden", "size",
                                                          "modified", "kind",      "tags"};

    /// Reads one entry; `.hidden` lists are not consulted. Fails if the entry cannot be examined.
    static Result<FileItem> at(const Location &location);

    Location location() const { return path(); }
    /// The path as bytes.
    std::string path() const;
    /// The name for display.
    QString name() const { return shown(std::string_view(nameBytes)); }

    /// Sort value of the size column: folders sort below all files.
    std::int64_t sizeSort() const { return isFolder ? -1 : size; }
    /// "1,2 MB"; empty for folders.
    QString sizeText() const;

    /// Whether the entry has this path.
    bool isAt(std::string_view path) const;
    /// Whether both have the same path, whatever their attributes.
    bool sameEntry(const FileItem &other) const;
    bool operator==(const FileItem &other) const;
};

/// Hashes everything that operator== compares.
std::size_t qHash(const FileItem &item, std::size_t seed = 0) noexcept;

std::vector<Location> locationsOf(const std::vector<FileItem> &items);

/// Attributes of an entry found when listing a folder; `linkTarget` is that of a link's target.
struct ListedEntry {
    std::string_view name;
    FileAttributes attributes;
    FileAttributes linkTarget;
    LinkState link = LinkState::None;
    bool hidden = false;
};

/// Makes an item without tags.
FileItem fileItem(std::shared_ptr<const std::string> folder, const ListedEntry &entry);

/// "PDF-Dokument", derived from the extension; "Datei" if unknown.
const QString &kindOfFile(std::string_view name);
/// "Ordner".
const QString &kindOfFolder();

} // namespace brellin
