#include "Disk/WalkBranch.h"

#include <algorithm>
#include <cerrno>
#include <new>
#include <utility>

namespace brellin {

namespace {

/// Maximum depth of folders handed to other threads: each branch copies path and ancestors, which is expensive in very
/// deep trees.
constexpr int deepestHandOver = 128;
/// Minimum size of names shared with other threads (some 800 names); less is done before another thread wakes up.
constexpr std::size_t sharedNames = 32 * 1024;

/// Whether the folder was removed or replaced since it was listed; not counted as unreadable.
bool hasVanished(const Failure &why)
{
    return why.is(std::errc::no_such_file_or_directory) || why.is(std::errc::not_a_directory) ||
           why.is(std::errc::too_many_symbolic_link_levels);
}

} // namespace

std::string childPath(std::string_view folder, std::string_view name)
{
    std::string path;
    path.reserve(folder.size() + 1 + name.size());
    path = folder;
    if (!path.ends_with('/'))
        path += '/';
    return path += name;
}

Result<WalkOutcome> WalkRun::result(const WalkOutcome &outcome) const
{
    if (error != 0)
        return failure(Failure::system(error));
    if (isCancelled())
        return failure(Failure::cancelled());
    return outcome;
}

Result<WalkBranch> WalkBranch::top(const Location &folder)
{
    if (folder.empty())
        return failure(Failure::system(ENOENT));
    std::error_code error;
    const Location absolute = std::filesystem::absolute(folder, error);
    if (error)
        return failure(Failure::system(error.value()));
    WalkBranch branch;
    branch.path = standardised(absolute).native();
    branch.folder = TRY(OpenFolder::open(branch.path, LastLink::Follow));
    return branch;
}

BranchWalker::BranchWalker(WalkRun &run, WalkSink &sink, std::size_t openFolders)
    : m_run(run)
    , m_sink(sink)
    , m_openFolders(openFolders)
{
}

Result<void> BranchWalker::walk(WalkBranch branch) noexcept
{
    try {
        return walkAll(std::move(branch));
    } catch (const std::bad_alloc &) {
        m_run.error = ENOMEM;
    } catch (...) {
        m_run.error = ENOTRECOVERABLE; // an exception of the visitor
    }
    m_run.ended = true;
    return {};
}

Result<void> BranchWalker::walkAll(WalkBranch branch)
{
    while (!m_levels.empty())
        drop();
    m_path = std::move(branch.path);
    m_baseDepth = branch.depth;
    m_baseAncestors = std::move(branch.ancestors);
    TRY(enter(std::move(branch.folder), std::move(branch.names), branch.namesOnly));
    WalkName name;
    while (!m_levels.empty() && !m_run.isOver()) {
        if (m_levels.back().names.next(name))
            pass(name);
        else if (!hasMoreNames())
            leave();
    }
    return {};
}

/// Enters a folder; m_path is its path already.
Result<void> BranchWalker::enter(OpenFolder folder, NameBlock names, bool namesOnly)
{
    while (m_levels.size() - m_closed >= m_openFolders && giveUpOldest()) {
    }
    Level &level = m_levels.emplace_back();
    level.folder = std::move(folder);
    level.pathLength = m_path.size();
    level.names = std::move(names);
    level.allNamesRead = namesOnly;
    if (!m_run.options.hidden)
        level.hidden = level.folder.hiddenNames();
    if (namesOnly)
        return {};
    if (!m_spare.empty()) {
        level.names = std::move(m_spare.back());
        m_spare.pop_back();
    }
    const Result<void> read = readNames();
    if (!read) {
        m_outcome.unreadable.emplace_back(m_path);
        drop();
    }
    return read;
}

Result<void> BranchWalker::readNames()
{
    do {
        Level &level = m_levels.back();
        TRY(level.folder.readNames(level.names));
    } while (handOverNames());
    return {};
}

bool BranchWalker::hasMoreNames()
{
    if (m_levels.back().allNamesRead)
        return false;
    if (!readNames()) {
        m_outcome.unreadable.emplace_back(m_path);
        return false;
    }
    return m_levels.back().names.unread() > 0;
}

/// Shares the names just read with other threads if the folder is large; true if they were taken.
bool BranchWalker::handOverNames()
{
    Level &level = m_levels.back();
    if (m_run.options.attributes == Attribute::None || level.names.unread() < sharedNames || !mayHandOver())
        return false;
    // Use a separate descriptor: threads sharing one contend in the kernel.
    Result<OpenFolder> folder = level.folder.again();
    if (!folder)
        return false;
    WalkBranch branch = branchOf(*std::move(folder), m_path, depth());
    branch.names = std::exchange(level.names, {});
    branch.namesOnly = true;
    m_sink.take(std::move(branch));
    return true;
}

void BranchWalker::pass(const WalkName &name)
{
    if (isLeftOut(name.bytes))
        return;
    fillEntry(name);
    ++m_outcome.entries;
    const WalkStep step = m_sink.show(m_entry);
    if (step == WalkStep::Stop)
        m_run.ended = true;
    else if (step == WalkStep::Continue && isEntered(m_entry))
        descend(name);
}

bool BranchWalker::isLeftOut(std::string_view name) const
{
    if (m_run.options.hidden)
        return false;
    const auto &list = m_levels.back().hidden;
    return isDotName(name) || (list && list->contains(name));
}

void BranchWalker::fillEntry(const WalkName &name)
{
    const Attribute wanted = m_run.options.attributes;
    m_entry.folder = m_path;
    m_entry.name = name.bytes;
    m_entry.depth = depth();
    m_entry.hidden = isDotName(name.bytes);
    m_entry.unreadable = false;
    m_entry.attributes.kind = name.kind;
    if (wanted != Attribute::None || !name.kindKnown) {
        m_entry.unreadable = !m_levels.back().folder.readAttributes(name.text(), wanted, m_entry.attributes);
        if (m_entry.unreadable) {
            m_entry.attributes = {};
            m_entry.attributes.kind = name.kind;
        }
    }
    m_entry.package = m_entry.attributes.isFolder() && isPackageName(name.bytes);
}

bool BranchWalker::isEntered(const WalkEntry &entry) const
{
    const WalkOptions &options = m_run.options;
    return entry.attributes.isFolder() && options.subfolders && (options.insidePackages || !entry.package) &&
           !(options.prune && options.prune(entry.name));
}

void BranchWalker::descend(const WalkName &name)
{
    const OpenFolder &here = m_levels.back().folder;
    if (!m_run.options.otherVolumes && here.hasVolumeAt(name.text()))
        return;
    Result<OpenFolder> folder = openChild(name.text());
    if (!folder) {
        if (!hasVanished(folder.error()))
            m_outcome.unreadable.emplace_back(childPath(m_path, name.bytes));
        return;
    }
    if (!m_run.options.otherVolumes && !folder->onVolumeOf(here))
        return;
    if (mayLoop(*folder) && isAncestor(folder->identity()))
        return;
    if (mayHandOver()) {
        m_sink.take(branchOf(*std::move(folder), childPath(m_path, name.bytes), depth() + 1));
        return;
    }
    if (!m_path.ends_with('/'))
        m_path += '/';
    m_path += name.bytes;
    (void)enter(*std::move(folder), {}, false); // notes what cannot be read
}

Result<OpenFolder> BranchWalker::openChild(const char *name)
{
    for (;;) {
        Result<OpenFolder> folder = m_levels.back().folder.child(name);
        const bool tooMany = !folder && (folder.error().is(std::errc::too_many_files_open) ||
                                         folder.error().is(std::errc::too_many_files_open_in_system));
        if (!tooMany || !giveUpOldest())
            return folder;
    }
}

/// Loops are only possible through mounts, so check only after crossing one.
bool BranchWalker::mayLoop(const OpenFolder &folder) const
{
    return folder.mount() == 0 || folder.mount() != m_run.topMount;
}

bool BranchWalker::isAncestor(const FileIdentity &identity) const
{
    const auto isSame = [&identity](const Level &level) { return level.folder.identity() == identity; };
    return std::ranges::any_of(m_levels, isSame) ||
           std::ranges::find(m_baseAncestors, identity) != m_baseAncestors.end();
}

bool BranchWalker::mayHandOver() const
{
    return depth() < deepestHandOver && m_sink.wantsBranches();
}

WalkBranch BranchWalker::branchOf(OpenFolder folder, std::string path, int depth) const
{
    WalkBranch branch;
    branch.folder = std::move(folder);
    branch.path = std::move(path);
    branch.depth = depth;
    branch.ancestors.reserve(m_baseAncestors.size() + m_levels.size());
    branch.ancestors = m_baseAncestors;
    for (const Level &level : m_levels)
        branch.ancestors.push_back(level.folder.identity());
    return branch;
}

/// Returns to the nearest ancestor that can be continued.
void BranchWalker::leave()
{
    OpenFolder below = std::move(m_levels.back().folder);
    drop();
    while (!m_levels.empty() && !m_levels.back().folder.isOpen() && !reopen(m_levels.back(), below)) {
        m_outcome.unreadable.emplace_back(m_path);
        below.close();
        drop();
    }
}

void BranchWalker::drop()
{
    Level &level = m_levels.back();
    if (!level.allNamesRead && m_spare.size() < m_openFolders)
        m_spare.push_back(std::exchange(level.names, {}));
    m_levels.pop_back();
    m_closed = std::min(m_closed, m_levels.size());
    if (!m_levels.empty())
        m_path.resize(m_levels.back().pathLength);
}

/// Reopens a folder whose descriptor was closed, through ".." or, if the subfolder was moved or is not searchable, by
/// path. Checks that it is the same folder.
bool BranchWalker::reopen(Level &level, const OpenFolder &below)
{
    const FileIdentity identity = level.folder.identity();
    Result<OpenFolder> folder = below.isOpen() ? below.parent() : OpenFolder::open(m_path, LastLink::Refuse);
    if ((!folder || folder->identity() != identity) && below.isOpen())
        folder = OpenFolder::open(m_path, LastLink::Refuse);
    if (!folder || folder->identity() != identity)
        return false;
    level.folder = *std::move(folder);
    m_closed = m_levels.size() - 1;
    return true;
}

/// Closes the outermost open folder, never the current one, and remembers its remaining names.
bool BranchWalker::giveUpOldest()
{
    if (m_closed + 1 >= m_levels.size())
        return false;
    Level &level = m_levels[m_closed++];
    if (!level.allNamesRead && !level.folder.readRemainingNames(level.names))
        m_outcome.unreadable.emplace_back(m_path.substr(0, level.pathLength));
    level.allNamesRead = true;
    level.folder.close();
    return true;
}

} // namespace brellin
