#include "Sidebar/FolderTree.h"

#include "Base/AbandonablePool.h"
#include "Base/German.h"
#include "Disk/Walk.h"
#include "Sidebar/ExpandedFolders.h"

#include <QCollator>

#include <algorithm>
#include <utility>

namespace brellin {

namespace {

/// Names of the subfolders in natural order; empty if the folder cannot be read.
std::vector<std::string> foldersIn(const Location &folder, bool hidden, const JobControl &control)
{
    struct Named {
        QCollatorSortKey sortKey;
        std::string name;
    };
    QCollator collator(german());
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::vector<Named> found;
    WalkOptions options;
    options.subfolders = false;
    options.hidden = hidden;
    [[maybe_unused]] const Result<WalkOutcome> walked = walk(
        folder, options,
        [&](const WalkEntry &entry) {
            if (entry.attributes.isFolder() && !entry.package)
                found.push_back({collator.sortKey(shown(entry.name)), std::string(entry.name)});
            return WalkStep::Continue;
        },
        &control);
    std::ranges::sort(found, [](const Named &a, const Named &b) {
        const int order = a.sortKey.compare(b.sortKey);
        return order != 0 ? order < 0 : a.name < b.name;
    });
    std::vector<std::string> names;
    names.reserve(found.size());
    for (Named &one : found)
        names.push_back(std::move(one.name));
    return names;
}

} // namespace

FolderTree::FolderTree(ExpandedFolders &stored) : m_stored(stored)
{
    takeStored();
    m_stored.changesByOthers.observe(this, [this](int) {
        takeStored();
        rebuild();
    });
}

void FolderTree::takeStored()
{
    m_expanded.clear();
    for (const Location &folder : m_stored.stored())
        m_expanded.insert(folder.native());
}

void FolderTree::setRoots(std::vector<FolderTreeRoot> roots)
{
    std::vector<Root> fresh;
    for (FolderTreeRoot &root : roots) {
        const auto same = std::ranges::find(m_roots, root.location, [](const Root &one) { return one.root.location; });
        fresh.push_back({std::move(root), same == m_roots.end() ? abandonablePool() : same->pool});
    }
    std::swap(m_roots, fresh);
    std::erase_if(m_folders, [&](const auto &entry) { return rootOf(entry.first) == nullptr; });
    rebuild();
}

void FolderTree::setShowHidden(bool show)
{
    if (std::exchange(m_showHidden, show) == show)
        return;
    for (const auto &[path, folder] : m_folders)
        refresh(path);
}

/// The deepest root that contains the folder; null if none does.
const FolderTree::Root *FolderTree::rootOf(const Location &folder) const
{
    const Root *deepest = nullptr;
    for (const Root &one : m_roots) {
        const std::string &path = one.root.location.native();
        if (isAtOrBelow(folder, one.root.location) &&
            (!deepest || path.size() > deepest->root.location.native().size()))
            deepest = &one;
    }
    return deepest;
}

Result<void> FolderTree::expand(const Location &folder)
{
    Result<void> stored = setExpanded({folder}, true);
    // Cached children are shown at once; read again, as they may be outdated.
    refresh(folder);
    return stored;
}

Result<void> FolderTree::collapse(const Location &folder)
{
    return setExpanded({folder}, false);
}

void FolderTree::reveal(const Location &folder)
{
    const Location target = standardised(folder);
    const Root *const root = rootOf(target);
    if (!root)
        return;
    std::vector<Location> above;
    for (Location place = target; place != root->root.location;) {
        const std::string name = place.filename().native();
        place = place.parent_path();
        above.push_back(place);
        const auto known = m_folders.find(place.native());
        // A newly created folder is missing from its parent's cached children.
        if (known != m_folders.end() && known->second->children &&
            std::ranges::find(*known->second->children, name) == known->second->children->end())
            refresh(place);
    }
    (void)setExpanded(above, true);
}

Result<void> FolderTree::setExpanded(const std::vector<Location> &folders, bool expanded)
{
    std::vector<Location> changed;
    for (const Location &folder : folders) {
        const bool different =
            expanded ? m_expanded.insert(folder.native()).second : m_expanded.erase(folder.native()) > 0;
        if (different)
            changed.push_back(folder);
    }
    if (changed.empty())
        return {};
    Result<void> stored = m_stored.setExpanded(changed, expanded);
    rebuild();
    return stored;
}

void FolderTree::refresh(const Location &folder)
{
    const auto known = m_folders.find(folder.native());
    if (known == m_folders.end())
        return;
    if (known->second->job.running())
        known->second->outdated = true;
    else
        read(folder.native());
}

void FolderTree::read(const std::string &path)
{
    const Root *const root = rootOf(path);
    std::unique_ptr<Folder> &folder = m_folders[path];
    if (!folder)
        folder = std::make_unique<Folder>();
    if (!root || folder->job.running())
        return;
    folder->outdated = false;
    folder->job.start(
        *root->pool,
        [location = Location(path), hidden = m_showHidden](JobControl &control) {
            return foldersIn(location, hidden, control);
        },
        [this, path](Names names) { finished(path, std::move(names)); });
}

void FolderTree::finished(const std::string &path, Names names)
{
    const std::unique_ptr<Folder> &folder = m_folders.at(path);
    const bool again = folder->outdated;
    forgetBelow(path, names);
    folder->children = std::move(names);
    if (again)
        read(path);
    rebuild();
}

/// Drops what is cached below `path`, except in the subfolders `kept` and below other roots.
void FolderTree::forgetBelow(const std::string &path, const Names &kept)
{
    const std::set<std::string, std::less<>> names(kept.begin(), kept.end());
    const std::string above = path == "/" ? path : path + '/';
    for (auto entry = m_folders.lower_bound(above); entry != m_folders.end() && entry->first.starts_with(above);) {
        const std::string_view below = std::string_view(entry->first).substr(above.size());
        const bool isRoot = rootOf(entry->first)->root.location != rootOf(path)->root.location;
        const bool gone = !below.empty() && !isRoot && !names.contains(below.substr(0, below.find('/')));
        entry = gone ? m_folders.erase(entry) : std::next(entry);
    }
}

void FolderTree::rebuild()
{
    std::vector<FolderTreeRow> list;
    for (const Root &one : m_roots)
        addRows(list, one.root.location, one.root.name, 0);
    publish(rows, std::move(list));
}

/// Adds a folder's row and those below it; starts reading expanded folders that are not cached.
void FolderTree::addRows(std::vector<FolderTreeRow> &list, const Location &folder, const QString &name, int depth)
{
    const std::string &path = folder.native();
    const bool expanded = m_expanded.contains(path);
    if (expanded && !m_folders.contains(path))
        read(path);
    const auto known = m_folders.find(path);
    const std::optional<Names> *const children = known == m_folders.end() ? nullptr : &known->second->children;
    const bool unread = children == nullptr || !*children;
    list.push_back({folder, name, depth, expanded, unread || !(*children)->empty(), expanded && unread});
    if (!expanded || unread)
        return;
    for (const std::string &child : **children)
        addRows(list, folder / child, shown(std::string_view(child)), depth + 1);
}

} // namespace brellin
