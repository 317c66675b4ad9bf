#include "Features/StorageTree.h"

#include "Disk/FileAttributes.h"
#include "Disk/Walk.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace brellin {

struct StorageTree::File {
    std::string name;
    std::int64_t bytes = 0;
};

struct StorageTree::Folder {
    Folder *parent = nullptr;
    StorageTotals totals; ///< including everything below
    std::map<std::string, std::unique_ptr<Folder>, std::less<>> folders;
    std::vector<File> files; ///< a heap, smallest on top
    File others;             ///< all that are not in `files`
    std::int64_t otherCount = 0;

    static bool bigger(const File &a, const File &b) { return a.bytes > b.bytes; }

    void add(File file)
    {
        files.push_back(std::move(file));
        std::ranges::push_heap(files, bigger);
        if (files.size() <= mostFiles)
            return;
        std::ranges::pop_heap(files, bigger);
        others.bytes += files.back().bytes;
        ++otherCount;
        files.pop_back();
    }
    /// Adds to this folder and all above.
    void addToTotals(std::int64_t bytes, std::int64_t count)
    {
        for (Folder *folder = this; folder; folder = folder->parent) {
            folder->totals.bytes += bytes;
            folder->totals.files += count;
        }
    }
};

/// Inserts the entries of a walk into the tree.
class StorageTree::Counter {
public:
    explicit Counter(StorageTree &tree) : m_tree(tree) {}

    void add(const WalkEntry &entry)
    {
        const std::scoped_lock lock(m_tree.m_mutex);
        Folder *folder = folderOf(entry);
        // Trashed during the count.
        if (!folder)
            return;
        if (!entry.attributes.isFolder()) {
            addFile(*folder, entry);
            return;
        }
        auto made = std::make_unique<Folder>();
        made->parent = folder;
        folder->folders.insert_or_assign(std::string(entry.name), std::move(made));
    }

private:
    Folder *folderOf(const WalkEntry &entry) const
    {
        Folder *folder = m_tree.m_root.get();
        std::string_view below = entry.folder.substr(std::min(m_tree.m_top.native().size(), entry.folder.size()));
        while (folder && !below.empty()) {
            below.remove_prefix(below.front() == '/' ? 1 : 0);
            const std::string_view part = below.substr(0, below.find('/'));
            const auto next = folder->folders.find(part);
            folder = part.empty() ? folder : next == folder->folders.end() ? nullptr : next->second.get();
            below.remove_prefix(part.size());
        }
        return folder;
    }
    void addFile(Folder &folder, const WalkEntry &entry)
    {
        const FileAttributes &attributes = entry.attributes;
        if (attributes.isFile() && attributes.links > 1 && !m_linked.insert(attributes.identity).second) {
            ++m_tree.m_totals.furtherLinks;
            m_tree.m_totals.sharedBytes += attributes.diskSize;
            return;
        }
        folder.add({std::string(entry.name), attributes.diskSize});
        folder.addToTotals(attributes.diskSize, 1);
    }

    StorageTree &m_tree;
    std::set<FileIdentity> m_linked;
};

StorageTree::StorageTree(Location top) : m_top(std::move(top)), m_root(std::make_unique<Folder>()) {}

StorageTree::~StorageTree() = default;

Result<void> StorageTree::count(const JobControl &control)
{
    Counter counter(*this);
    WalkOptions options;
    options.attributes = Attribute::Identity | Attribute::Size;
    options.otherVolumes = false;
    const WalkOutcome outcome = TRY(walk(
        m_top, options,
        [&](const WalkEntry &entry) {
            counter.add(entry);
            return WalkStep::Continue;
        },
        &control));
    const std::scoped_lock lock(m_mutex);
    m_totals.unreadable = std::ssize(outcome.unreadable);
    return {};
}

StorageTotals StorageTree::totals() const
{
    const std::scoped_lock lock(m_mutex);
    StorageTotals all = m_totals;
    all.bytes = m_root->totals.bytes;
    all.files = m_root->totals.files;
    return all;
}

/// Requires the mutex.
StorageTree::Folder *StorageTree::find(const Location &folder) const
{
    if (!isAtOrBelow(folder, m_top))
        return nullptr;
    Folder *found = m_root.get();
    if (folder == m_top)
        return found;
    for (const Location &part : folder.lexically_relative(m_top)) {
        const auto next = found->folders.find(part.native());
        if (next == found->folders.end())
            return nullptr;
        found = next->second.get();
    }
    return found;
}

bool StorageTree::holds(const Location &folder) const
{
    const std::scoped_lock lock(m_mutex);
    return find(folder) != nullptr;
}

StorageTotals StorageTree::totalsOf(const Location &folder) const
{
    const std::scoped_lock lock(m_mutex);
    const Folder *found = find(folder);
    return found ? found->totals : StorageTotals();
}

std::vector<StorageEntry> StorageTree::entries(const Location &folder) const
{
    std::vector<StorageEntry> entries;
    {
        const std::scoped_lock lock(m_mutex);
        const Folder *found = find(folder);
        if (!found)
            return entries;
        using Kind = StorageEntry::Kind;
        for (const auto &[name, below] : found->folders)
            entries.push_back(
                {Kind::Folder, folder / name, shown(std::string_view(name)), below->totals.bytes, below->totals.files});
        for (const File &file : found->files)
            entries.push_back({Kind::File, folder / file.name, shown(std::string_view(file.name)), file.bytes, 1});
        if (found->otherCount > 0)
            entries.push_back(
                {Kind::SmallFiles, folder, QStringLiteral("weitere"), found->others.bytes, found->otherCount});
    }
    std::ranges::sort(entries, [](const StorageEntry &a, const StorageEntry &b) {
        return a.bytes != b.bytes ? a.bytes > b.bytes : a.location.native() < b.location.native();
    });
    return entries;
}

void StorageTree::remove(const Location &entry)
{
    const std::scoped_lock lock(m_mutex);
    Folder *folder = entry == m_top ? nullptr : find(entry.parent_path());
    if (!folder)
        return;
    const std::string name = entry.filename().native();
    if (const auto below = folder->folders.find(name); below != folder->folders.end()) {
        folder->addToTotals(-below->second->totals.bytes, -below->second->totals.files);
        folder->folders.erase(below);
        return;
    }
    const auto file = std::ranges::find(folder->files, name, &File::name);
    if (file == folder->files.end())
        return;
    folder->addToTotals(-file->bytes, -1);
    folder->files.erase(file);
    std::ranges::make_heap(folder->files, Folder::bigger);
}

} // namespace brellin
