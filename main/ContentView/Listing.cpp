#include "ContentView/Listing.h"

#include "Base/ParallelFor.h"
#include "ContentView/LinkTarget.h"
#include "Disk/EntryAttribute.h"
#include "Disk/WalkFolder.h"
#include "Features/FileTags.h"

#include <algorithm>
#include <span>

namespace brellin {

namespace {

/// Entries per unit of parallel work.
constexpr std::size_t pieceSize = 512;

/// Reads the entries of one folder on several threads.
class ListingReader {
public:
    ListingReader(const Location &location, OpenFolder folder, HiddenEntries hidden, ItemDetails details)
        : m_path(std::make_shared<const std::string>(location.native()))
        , m_folder(std::move(folder))
        , m_hiddenNames(m_folder.hiddenNames())
        , m_hidden(hidden)
        , m_details(details)
    {
    }

    Result<std::vector<FileItem>> read(const JobControl *control)
    {
        TRY(readNames());
        std::vector<FileItem> items(m_names.size());
        const std::size_t pieces = (items.size() + pieceSize - 1) / pieceSize;
        const auto readPiece = [&](std::size_t piece) {
            const std::size_t first = piece * pieceSize;
            const std::size_t count = std::min(pieceSize, items.size() - first);
            readEntries(std::span(m_names).subspan(first, count), std::span(items).subspan(first, count));
        };
        parallelFor(pieces, readPiece, control);
        if (control != nullptr && control->cancelled())
            return failure(Failure::cancelled());
        std::erase_if(items, [](const FileItem &item) { return item.folder == nullptr; });
        return items;
    }

private:
    bool isHidden(std::string_view name) const
    {
        return isDotName(name) || (m_hiddenNames && m_hiddenNames->contains(name));
    }

    Result<void> readNames()
    {
        TRY(m_folder.readRemainingNames(m_block));
        for (WalkName name; m_block.next(name);) {
            if (m_hidden == HiddenEntries::Shown || !isHidden(name.bytes))
                m_names.push_back(name.bytes);
        }
        return {};
    }

    /// Leaves `items[i]` without a folder if the entry cannot be examined.
    void readEntries(std::span<const std::string_view> names, std::span<FileItem> items) const
    {
        EntryAttribute tags(*m_path, FileTags::attribute);
        LinkTargets links;
        for (std::size_t i = 0; i < names.size(); ++i) {
            ListedEntry entry{.name = names[i], .attributes = {}, .linkTarget = {}};
            // NOLINTNEXTLINE(bugprone-suspicious-stringview-data-usage): a WalkName ends with a zero byte
            if (!m_folder.readAttributes(names[i].data(), Attribute::Size | Attribute::Modified, entry.attributes))
                continue;
            entry.hidden = isHidden(entry.name);
            if (entry.attributes.isLink())
                entry.link = links.examine(Location(*m_path) / entry.name, entry.linkTarget);
            items[i] = fileItem(m_path, entry);
            if (const std::string_view value = tags.read(entry.name); !value.empty() && !entry.attributes.isLink())
                items[i].tags = FileTags::tagsFromBytes(value);
            if (m_details == ItemDetails::Read)
                items[i].details = readDetails(Location(*m_path) / entry.name);
        }
    }

    const std::shared_ptr<const std::string> m_path;
    const OpenFolder m_folder;
    const std::shared_ptr<const HiddenNames> m_hiddenNames;
    const HiddenEntries m_hidden;
    const ItemDetails m_details;
    NameBlock m_block;
    std::vector<std::string_view> m_names; ///< point into m_block
};

Result<FileItems> readFolder(const Location &folder, HiddenEntries hidden, ItemDetails details,
                             const JobControl *control)
{
    ListingReader reader(folder, TRY(OpenFolder::open(folder.native(), LastLink::Follow)), hidden, details);
    return FileItems(TRY(reader.read(control)));
}

} // namespace

Listing readListing(const Location &folder, HiddenEntries hidden, const Volumes &volumes, const JobControl *control,
                    ItemDetails details)
{
    const auto begin = std::chrono::steady_clock::now();
    Listing listing;
    Result<FileItems> items = readFolder(folder, hidden, details, control);
    if (items)
        listing.items = *std::move(items);
    else
        listing.error = items.error();
    const bool missing = listing.error && (listing.error->is(std::errc::no_such_file_or_directory) ||
                                           listing.error->is(std::errc::not_a_directory));
    // After a cancel, `volumes` may have been destroyed.
    if (!missing && (control == nullptr || !control->cancelled())) {
        if (const Result<std::int64_t> available = volumes.available(folder))
            listing.freeSpace = *available;
    }
    listing.taken = std::chrono::steady_clock::now() - begin;
    return listing;
}

FileItems readItems(const std::vector<Location> &locations, const JobControl *control)
{
    std::vector<FileItem> items;
    std::shared_ptr<const std::string> folder;
    for (const Location &location : locations) {
        if (control != nullptr && control->cancelled())
            break;
        Result<FileItem> item = FileItem::at(location);
        if (!item)
            continue;
        item->details = readDetails(location);
        // Neighbouring matches often share a folder: share its path.
        if (folder && *folder == *item->folder)
            item->folder = folder;
        folder = item->folder;
        items.push_back(*std::move(item));
    }
    return FileItems(std::move(items));
}

} // namespace brellin
