#include "Disk/TreeMark.h"

#include "Disk/WholeWalk.h"

#include <algorithm>
#include <functional>
#include <string>

namespace brellin {

namespace {

void mix(std::uint64_t &hash, std::uint64_t value)
{
    hash = (hash ^ value) * 0x9E3779B97F4A7C15ULL;
    hash ^= hash >> 32U;
}

/// Of its path below a folder of this many bytes, and of what it is.
std::uint64_t hashOf(const WalkEntry &entry, std::size_t folder)
{
    std::string path(entry.folder.substr(folder));
    path.append("/").append(entry.name);
    std::uint64_t hash = std::hash<std::string>()(path);
    mix(hash, static_cast<std::uint64_t>(entry.attributes.kind));
    if (!entry.attributes.isFolder()) {
        mix(hash, static_cast<std::uint64_t>(entry.attributes.size));
        mix(hash, static_cast<std::uint64_t>(entry.attributes.modified.time_since_epoch().count()));
    }
    return hash;
}

/// Calls `take` with each entry below `folder` and its hash, until it gives false.
Result<void> forEach(const Location &folder, const JobControl *control,
                     const std::function<bool(const WalkEntry &, std::uint64_t)> &take)
{
    const Location top = standardised(folder);
    const auto visit = [&](const WalkEntry &entry) {
        return take(entry, hashOf(entry, top.native().size())) ? WalkStep::Continue : WalkStep::Stop;
    };
    return walkWhole(top, {.attributes = Attribute::Size | Attribute::Modified, .prune = {}}, visit, control);
}

} // namespace

Result<TreeMark> TreeMark::of(const Location &folder, const JobControl *control)
{
    TreeMark mark;
    TRY(forEach(folder, control, [&](const WalkEntry &, std::uint64_t hash) {
        mark.m_entries.push_back(hash);
        return true;
    }));
    std::ranges::sort(mark.m_entries);
    return mark;
}

std::shared_ptr<const TreeMark> TreeMark::shared(const Location &entry)
{
    const Result<FileAttributes> attributes = readAttributes(entry);
    if (!attributes || !attributes->isFolder())
        return nullptr;
    Result<TreeMark> mark = of(entry);
    return mark ? std::make_shared<const TreeMark>(*std::move(mark)) : nullptr;
}

Result<std::vector<Location>> TreeMark::newIn(const Location &folder, std::size_t most, const JobControl *control) const
{
    std::vector<Location> found;
    TRY(forEach(folder, control, [&](const WalkEntry &entry, std::uint64_t hash) {
        if (!std::ranges::binary_search(m_entries, hash))
            found.push_back(entry.location());
        return found.size() < most;
    }));
    return found;
}

} // namespace brellin
