#pragma once

#include "Base/Instant.h"
#include "Base/Location.h"
#include "Base/Result.h"
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

/// Whether an entry is a symbolic link, and whether that leads anywhere.
enum class LinkState : std::uint8_t { None, Leads, Broken };

/// One listed entry. Small, because a folder may hold a million of them: the folder's path is shared by its entries, and the
/// entry's own path is made on demand.
///
/// A link to a folder shows as a folder; size and time are the link's own.
struct FileItem {
    std::shared_ptr<const std::string> folder; ///< the path of the folder it lies in, never null in a listing
    std::string nameBytes;
    bool isFolder = false; ///< also a link to a folder; a package counts as a file
    bool isHidden = false; ///< by a leading dot or the folder's `.hidden` list
    LinkState link = LinkState::None;
    std::int64_t size = 0; ///< bytes; 0 where unknown
    Instant modified = Instant::min();
    QString kind;     ///< "PDF-Dokument", "Ordner", "Datei"
    QStringList tags; ///< tag names

    /// The attributes that are read of every entry, in this order.
    static constexpr std::array<std::string_view, 7> keys{"isFolder", "isPackage", "isHidden", "size",
                                                          "modified", "kind",      "tags"};

    /// Reads one entry. Fails where it cannot be examined.
    static Result<FileItem> at(const Location &location);

    Location location() const { return path(); }
    /// The bytes of the location.
    std::string path() const;
    /// The name for reading.
    QString name() const { return shown(std::string_view(nameBytes)); }

    /// What the size column sorts by: folders come below every file.
    std::int64_t sizeSort() const { return isFolder ? -1 : size; }
    /// "1,2 MB"; empty for a folder.
    QString sizeText() const;

    /// Whether `path` is this entry's.
    bool isAt(std::string_view path) const;
    /// Whether both stand for the same entry, whatever became of it.
    bool sameEntry(const FileItem &other) const;
    bool operator==(const FileItem &other) const;
};

/// Of all that makes two items equal.
std::size_t qHash(const FileItem &item, std::size_t seed = 0) noexcept;

std::vector<Location> locationsOf(const std::vector<FileItem> &items);

/// What is known of an entry that a folder lists; `linkTarget` is what a link leads to.
struct ListedEntry {
    std::string_view name;
    FileAttributes attributes;
    FileAttributes linkTarget;
    LinkState link = LinkState::None;
    bool hidden = false;
};

/// The item of a listed entry, without its tags.
FileItem fileItem(std::shared_ptr<const std::string> folder, const ListedEntry &entry);

/// "PDF-Dokument" by the name's extension, "Datei" where nobody knows it.
const QString &kindOfFile(std::string_view name);
/// "Ordner"
const QString &kindOfFolder();

} // namespace brellin
