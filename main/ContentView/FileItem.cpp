#include "ContentView/FileItem.h"

#include "Base/German.h"
#include "ContentView/LinkTarget.h"
#include "Disk/FileTypes.h"
#include "Features/FileTags.h"

#include <QHash>

namespace brellin {

namespace {

/// The folder's path without a trailing slash, as a prefix of its entries' paths.
std::string_view folderOf(const FileItem &item)
{
    return item.folder && *item.folder != "/" ? std::string_view(*item.folder) : std::string_view();
}

} // namespace

std::string FileItem::path() const
{
    const std::string_view above = folderOf(*this);
    std::string path;
    path.reserve(above.size() + 1 + nameBytes.size());
    path.append(above).append(1, '/').append(nameBytes);
    return path;
}

bool FileItem::isAt(std::string_view path) const
{
    const std::string_view above = folderOf(*this);
    return path.size() == above.size() + 1 + nameBytes.size() && path.ends_with(nameBytes) &&
           path[above.size()] == '/' && path.starts_with(above);
}

QString FileItem::sizeText() const
{
    return isFolder ? QString() : brellin::sizeText(size);
}

bool FileItem::sameEntry(const FileItem &other) const
{
    return nameBytes == other.nameBytes && (folder == other.folder || folderOf(*this) == folderOf(other));
}

bool FileItem::operator==(const FileItem &other) const
{
    return isFolder == other.isFolder && isHidden == other.isHidden && link == other.link && size == other.size &&
           modified == other.modified && sameEntry(other) && kind == other.kind && tags == other.tags &&
           details == other.details;
}

std::size_t qHash(const FileItem &item, std::size_t seed) noexcept
{
    const std::string_view above = folderOf(item);
    return qHashMulti(seed, QByteArrayView(above.data(), static_cast<qsizetype>(above.size())),
                      QByteArrayView(item.nameBytes.data(), static_cast<qsizetype>(item.nameBytes.size())),
                      item.isFolder, item.isHidden, static_cast<int>(item.link), item.size,
                      item.modified.time_since_epoch().count(), item.kind, item.tags,
                      item.details.created.time_since_epoch().count(), item.details.accessed.time_since_epoch().count(),
                      item.details.owner, item.details.mode);
}

FileItem fileItem(std::shared_ptr<const std::string> folder, const ListedEntry &entry)
{
    const bool leadsToFolder = entry.link == LinkState::Leads && entry.linkTarget.isFolder();
    FileItem item;
    item.folder = std::move(folder);
    item.nameBytes = entry.name;
    item.isFolder = entry.attributes.isFolder() || leadsToFolder;
    item.isHidden = entry.hidden;
    item.link = entry.link;
    item.size = entry.attributes.size;
    item.modified = entry.attributes.modified;
    item.kind = item.isFolder ? kindOfFolder() : kindOfFile(entry.name);
    return item;
}

Result<FileItem> FileItem::at(const Location &location)
{
    const Location place = standardised(location);
    const std::string name = place.filename().native();
    ListedEntry entry{.name = name, .attributes = TRY(readAttributes(place)), .linkTarget = {}};
    entry.hidden = isDotName(name);
    if (entry.attributes.isLink())
        entry.link = LinkTargets().examine(place, entry.linkTarget);
    FileItem item = fileItem(std::make_shared<const std::string>(place.parent_path().native()), entry);
    if (entry.link == LinkState::None)
        item.tags = FileTags::tagsFromBytes(FileTags::rawTags(place));
    return item;
}

const QString &kindOfFolder()
{
    static const QString text = QStringLiteral("Ordner");
    return text;
}

const QString &kindOfFile(std::string_view name)
{
    static const QString unknown = QStringLiteral("Datei");
    // Neighbours often have the same type: cache the last one, which also shares its text.
    thread_local std::string lastExtension;
    thread_local QString lastKind = unknown;
    const std::string_view extension = extensionOf(name);
    if (extension != lastExtension) {
        lastExtension = extension;
        const QString text = typeDescription(extension);
        lastKind = text.isEmpty() ? unknown : text;
    }
    return lastKind;
}

std::vector<Location> locationsOf(const std::vector<FileItem> &items)
{
    std::vector<Location> locations;
    locations.reserve(items.size());
    for (const FileItem &item : items)
        locations.push_back(item.location());
    return locations;
}

} // namespace brellin
