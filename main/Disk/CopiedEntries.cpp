#include "Disk/CopiedEntries.h"

#include <algorithm>

namespace brellin {

namespace {

std::int64_t nanosecondsOf(const timespec &time)
{
    constexpr std::int64_t second = 1'000'000'000;
    return time.tv_sec * second + time.tv_nsec;
}

} // namespace

void CopiedEntries::begin(std::uint64_t top, Proof proof)
{
    m_entries.clear();
    m_top = top;
    m_proof = proof;
}

void CopiedEntries::add(std::uint64_t path, const SourceStatus &source, std::uint64_t mark)
{
    const struct stat &status = source.status;
    const bool folder = S_ISDIR(status.st_mode);
    m_entries.push_back({path, status.st_ino, status.st_dev, folder ? 0 : status.st_size,
                         folder ? 0 : nanosecondsOf(status.st_mtim), status.st_mode & S_IFMT,
                         nanosecondsOf(status.st_ctim), source.settled, mark});
}

void CopiedEntries::sort()
{
    std::ranges::sort(m_entries);
}

const CopiedEntries::Entry *CopiedEntries::find(std::uint64_t path, const struct stat &now) const
{
    const bool folder = S_ISDIR(now.st_mode);
    const auto isThere = [&](const Entry &entry) {
        return (entry.inode == now.st_ino || m_proof == Proof::None) && entry.device == now.st_dev &&
               entry.type == (now.st_mode & S_IFMT) &&
               (folder || (entry.size == now.st_size && entry.modified == nanosecondsOf(now.st_mtim)));
    };
    const auto same = std::ranges::equal_range(m_entries, path, {}, &Entry::path);
    const auto found = std::ranges::find_if(same, isThere);
    return found == same.end() ? nullptr : &*found;
}

bool CopiedEntries::isProvenBy(const Entry &entry, const struct stat &now) const
{
    return m_proof == Proof::InodeAndTime && entry.settled && entry.changed == nanosecondsOf(now.st_ctim);
}

} // namespace brellin
