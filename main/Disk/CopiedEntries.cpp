#include "Disk/CopiedEntries.h"

#include "Disk/RemovalWalk.h"

#include <algorithm>
#include <utility>

namespace brellin {

void CopiedEntries::begin(std::uint64_t top, Inodes inodes)
{
    m_entries.clear();
    m_top = top;
    m_inodes = inodes;
}

CopiedEntries::Entry CopiedEntries::entryOf(std::uint64_t path, const struct stat &status) const
{
    const bool folder = S_ISDIR(status.st_mode);
    constexpr std::int64_t second = 1'000'000'000;
    return {path,
            m_inodes == Inodes::Stable ? status.st_ino : 0,
            status.st_dev,
            folder ? 0 : status.st_size,
            folder ? 0 : status.st_mtim.tv_sec * second + status.st_mtim.tv_nsec,
            status.st_mode & S_IFMT};
}

void CopiedEntries::add(std::uint64_t path, const struct stat &source)
{
    m_entries.push_back(entryOf(path, source));
}

void CopiedEntries::sort()
{
    std::ranges::sort(m_entries);
}

bool CopiedEntries::holds(std::uint64_t path, const struct stat &now) const
{
    return std::ranges::binary_search(m_entries, entryOf(path, now));
}

namespace {

class SourceRemoval : private RemovalWalk {
public:
    SourceRemoval(Location source, const CopiedEntries &copied) : m_source(std::move(source)), m_copied(copied) {}

    Result<std::vector<Location>> run(NameIn top)
    {
        TRY(RemovalWalk::run(top, m_copied.top()));
        return std::move(m_kept);
    }

private:
    bool mayGo(std::string_view name, std::uint64_t path, const struct stat &now) override
    {
        const bool copied = m_copied.holds(path, now);
        if (!copied)
            m_kept.push_back(placeOf(name, m_source));
        return copied;
    }

    /// What is in it has been named, or came this very moment.
    void filled(std::string_view name) override
    {
        if (m_kept.empty() && !failed())
            m_kept.push_back(placeOf(name, m_source));
    }

    Location m_source;
    const CopiedEntries &m_copied;
    std::vector<Location> m_kept;
};

} // namespace

Result<std::vector<Location>> removeCopied(const Location &source, const CopiedEntries &copied)
{
    const EntryPlace place = TRY(openPlace(source));
    return SourceRemoval(standardised(source), copied).run(place.at());
}

} // namespace brellin
