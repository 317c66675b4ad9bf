#include "Sidebar/FolderTree.h"

#include "Base/AbandonablePool.h"
#include "Base/German.h"
#include "Disk/FolderWatcher.h"
#include "Disk/Walk.h"
#include "Sidebar/ExpandedFolders.h"

#include <QCollator>

#include <algorithm>
#include <mutex>
#include <utility>

namespace brellin {

namespace {

/// Watcher events within this time cause a single reading.
constexpr std::chrono::milliseconds changesDelay{500};
/// Every watched folder takes one of the few watches that the system grants each user.
constexpr int mostWatched = 32;

/// Names of the subfolders in natural order.
Result<std::vector<std::string>> foldersIn(const Location &folder, bool hidden, const JobControl &control)
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
    TRY(walk(
        folder, options,
        [&](const WalkEntry &entry) {
            if (entry.attributes.isFolder())
                found.push_back({collator.sortKey(shown(entry.name)), std::string(entry.name)});
            return WalkStep::Continue;
        },
        &control));
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

/// Posts watcher events to the tree from the watcher's thread; disconnected when the tree is destroyed.
struct FolderTree::Relay {
    std::mutex mutex;
    FolderTree *tree = nullptr;

    void heard(const std::string &path)
    {
        const std::scoped_lock lock(mutex);
        if (tree)
            tree->m_mailbox.post([to = tree, path] { to->heard(path); });
    }
};

FolderTree::FolderTree(ExpandedFolders &stored) : m_stored(stored), m_relay(std::make_shared<Relay>())
{
    m_relay->tree = this;
    m_soon.setSingleShot(true);
    connect(&m_soon, &QTimer::timeout, this, [this] { readHeard(); });
    takeStored();
    m_stored.changesByOthers.observe(this, [this](int) {
        takeStored();
        rebuild();
    });
}

FolderTree::~FolderTree()
{
    const std::scoped_lock lock(m_relay->mutex);
    m_relay->tree = nullptr;
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
    refreshAll();
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
    std::vector<Location> opened{folder};
    for (const Location &above : foldersAbove(folder)) {
        if (m_revealed.contains(above.native()))
            opened.push_back(above);
    }
    for (const Location &one : opened) {
        m_revealed.erase(one.native());
        m_expanded.insert(one.native());
    }
    Result<void> stored = m_stored.setExpanded(opened, true);
    rebuild();
    // Cached children are shown at once; read again, as they may be outdated.
    refresh(folder);
    return stored;
}

Result<void> FolderTree::collapse(const Location &folder)
{
    m_revealed.erase(folder.native());
    Result<void> stored;
    if (m_expanded.erase(folder.native()) > 0)
        stored = m_stored.setExpanded({folder}, false);
    rebuild();
    return stored;
}

/// From the next one to the root; none if no root contains the folder.
std::vector<Location> FolderTree::foldersAbove(const Location &folder) const
{
    const Root *const root = rootOf(folder);
    std::vector<Location> above;
    for (Location place = folder; root && place != root->root.location;) {
        place = place.parent_path();
        above.push_back(place);
    }
    return above;
}

void FolderTree::reveal(const Location &folder)
{
    const Location target = standardised(folder);
    leave(target);
    std::vector<Location> outdated;
    std::string name = target.filename().native();
    for (const Location &place : foldersAbove(target)) {
        const auto known = m_folders.find(place.native());
        const bool opens = !isExpanded(place.native()) && m_revealed.insert(place.native()).second;
        // A newly created folder is missing from its parent's cached children.
        const bool missing = known != m_folders.end() && known->second->children &&
                             std::ranges::find(*known->second->children, name) == known->second->children->end();
        if (opens || missing)
            outdated.push_back(place);
        name = place.filename().native();
    }
    rebuild();
    for (const Location &branch : outdated)
        refresh(branch);
}

void FolderTree::leave(const Location &folder)
{
    const Location target = standardised(folder);
    const auto left = [&](const std::string &path) { return !isAtOrBelow(target, Location(path)); };
    if (std::erase_if(m_revealed, left) > 0)
        rebuild();
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

void FolderTree::refreshAll()
{
    for (const auto &[path, folder] : m_folders)
        refresh(path);
}

bool FolderTree::mayWatch(const std::string &path) const
{
    const auto isWatched = [](const auto &entry) { return entry.second->watcher != nullptr; };
    return isExpanded(path) && !m_folders.at(path)->watcher &&
           std::ranges::count_if(m_folders, isWatched) < mostWatched;
}

void FolderTree::heard(const std::string &path)
{
    m_heard.insert(path);
    if (!m_soon.isActive())
        m_soon.start(changesDelay);
}

void FolderTree::readHeard()
{
    for (const std::string &path : std::exchange(m_heard, {})) {
        const auto known = m_folders.find(path);
        if (known == m_folders.end() || !known->second->watcher)
            continue;
        if (known->second->watcher->take().gone)
            known->second->watcher.reset();
        refresh(path);
    }
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
        [location = Location(path), hidden = m_showHidden, watched = mayWatch(path),
         relay = m_relay](JobControl &control) {
            Answer answer;
            // Watch before reading, so that no change is missed.
            if (watched) {
                auto watcher =
                    FolderWatcher::watch(location, [relay, path = location.native()] { relay->heard(path); });
                answer.watcher = watcher.value_or(nullptr);
            }
            Result<Names> names = foldersIn(location, hidden, control);
            answer.gone = !names && names.error().is(std::errc::no_such_file_or_directory);
            answer.names = std::move(names).value_or(Names());
            return answer;
        },
        [this, path](Answer answer) { finished(path, std::move(answer)); });
}

void FolderTree::finished(const std::string &path, Answer answer)
{
    const std::unique_ptr<Folder> &folder = m_folders.at(path);
    const bool again = folder->outdated;
    forgetBelow(path, answer.names);
    folder->children = std::move(answer.names);
    if (answer.watcher)
        folder->watcher = std::move(answer.watcher);
    if (again)
        read(path);
    if (answer.gone)
        refresh(Location(path).parent_path());
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
    for (const auto &[path, folder] : m_folders) {
        if (!isExpanded(path))
            folder->watcher.reset();
    }
    std::vector<FolderTreeRow> list;
    for (const Root &one : m_roots)
        addRows(list, one.root.location, one.root.name, 0);
    publish(rows, std::move(list));
}

/// Adds a folder's row and those below it; starts reading expanded folders that are not cached.
void FolderTree::addRows(std::vector<FolderTreeRow> &list, const Location &folder, const QString &name, int depth)
{
    const std::string &path = folder.native();
    const bool expanded = isExpanded(path);
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
