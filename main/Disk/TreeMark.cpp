#include "Disk/TreeMark.h"

#include "Disk/WholeWalk.h"

#include <QtEndian>

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>

namespace brellin {

namespace {

void mix(std::uint64_t &hash, std::uint64_t value)
{
    hash = (hash ^ value) * 0x9E3779B97F4A7C15ULL;
    hash ^= hash >> 32U;
}

/// FNV-1a. Marks are stored, so std::hash is unsuitable: it may change between versions.
std::uint64_t hashOf(std::string_view text)
{
    std::uint64_t hash = 0xCBF29CE484222325ULL;
    for (const char c : text)
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3ULL;
    return hash;
}

/// Hash of the entry's path below the folder and its attributes; `folder` is the length of the folder's path.
std::uint64_t hashOf(const WalkEntry &entry, std::size_t folder)
{
    std::string path(entry.folder.substr(folder));
    path.append("/").append(entry.name);
    std::uint64_t hash = hashOf(path);
    mix(hash, static_cast<std::uint64_t>(entry.attributes.kind));
    if (!entry.attributes.isFolder()) {
        mix(hash, static_cast<std::uint64_t>(entry.attributes.size));
        mix(hash, static_cast<std::uint64_t>(entry.attributes.modified.time_since_epoch().count()));
    }
    return hash;
}

/// Calls `take` for each entry below `folder` with its hash, until it returns false.
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

QByteArray TreeMark::bytes() const
{
    if (m_entries.empty())
        return {};
    constexpr auto size = static_cast<qsizetype>(sizeof(std::uint64_t));
    QByteArray all(static_cast<qsizetype>(m_entries.size()) * size, Qt::Uninitialized);
    qToLittleEndian<quint64>(m_entries.data(), static_cast<qsizetype>(m_entries.size()), all.data());
    return all;
}

std::optional<TreeMark> TreeMark::fromBytes(const QByteArray &bytes)
{
    constexpr auto size = static_cast<qsizetype>(sizeof(std::uint64_t));
    if (bytes.size() % size != 0)
        return std::nullopt;
    TreeMark mark;
    if (bytes.isEmpty())
        return mark;
    mark.m_entries.resize(static_cast<std::size_t>(bytes.size() / size));
    qFromLittleEndian<quint64>(bytes.constData(), bytes.size() / size, mark.m_entries.data());
    if (!std::ranges::is_sorted(mark.m_entries))
        return std::nullopt;
    return mark;
}

} // namespace brellin
