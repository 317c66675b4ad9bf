#include "Transfers/FolderComparison.h"

#include "Disk/CopyTreeRemoval.h"
#include "Disk/EntryPlace.h"

#include <algorithm>

namespace brellin {

namespace {

Result<std::vector<std::string>> namesIn(const Location &folder, const JobControl &control)
{
    const EntryPlace place = TRY(openPlace(folder));
    const Descriptor opened = TRY(openFolder(place.at()));
    std::vector<std::string> names;
    for (ListedName &listed : TRY(listFolder(opened.number(), &control)))
        names.push_back(std::move(listed.name));
    std::ranges::sort(names);
    return names;
}

class Comparing {
public:
    using Deadline = std::optional<std::chrono::steady_clock::time_point>;
    Comparing(const StayingEntries &staying, const JobControl &control, Deadline deadline)
        : m_staying(staying)
        , m_control(control)
        , m_deadline(deadline)
    {
    }

    Result<FolderComparison> run(const Location &src, const Location &dst)
    {
        enter(src, dst);
        if (m_control.cancelled())
            return failure(Failure::cancelled());
        return std::move(m_found);
    }

private:
    /// As deep as a path can be long.
    void enter(const Location &src, const Location &dst)
    {
        m_staying.add(src);
        const Result<MergedFolder> folder = folderOf(src, dst);
        const Result<std::vector<std::string>> names = folder ? namesIn(src, m_control) : failure(folder.error());
        if (!names) {
            m_found.unread << EntryFailure{src, names.error()};
            return;
        }
        for (const std::string &name : *names) {
            if (stopped())
                return;
            compare(src / name, dst / name);
        }
        m_found.folders.push_back(*folder);
    }

    static Result<MergedFolder> folderOf(const Location &src, const Location &dst)
    {
        const FileIdentity from = TRY(readAttributes(src)).identity;
        const FileIdentity into = TRY(readAttributes(dst)).identity;
        return MergedFolder{src, dst, from, into, TRY(FolderFacts::of(src))};
    }

    void compare(const Location &src, const Location &dst)
    {
        if (mayMerge(src, dst, m_staying))
            enter(src, dst);
        else
            m_found.entries.push_back({src, dst, entryExists(dst)});
    }

    bool stopped()
    {
        m_found.complete = m_found.complete && !(m_deadline && std::chrono::steady_clock::now() > *m_deadline);
        return !m_found.complete || m_control.cancelled();
    }

    StayingEntries m_staying; ///< with the folders entered
    const JobControl &m_control;
    const Deadline m_deadline;
    FolderComparison m_found;
};

} // namespace

std::int64_t FolderComparison::collisions() const
{
    return std::ranges::count_if(entries, &Entry::taken);
}

Result<FolderComparison> FolderComparison::of(const Location &src, const Location &dst, const StayingEntries &staying,
                                              const JobControl &control,
                                              std::optional<std::chrono::steady_clock::time_point> deadline)
{
    return Comparing(staying, control, deadline).run(src, dst);
}

bool mayMerge(const Location &src, const Location &dst, const StayingEntries &staying)
{
    const FileAttributes from = readAttributes(src).value_or(FileAttributes());
    const FileAttributes into = readAttributes(dst).value_or(FileAttributes());
    return from.isFolder() && into.isFolder() && from.identity != into.identity && staying.mayTakeIn(dst);
}

Result<void> MergedFolder::checkStand() const
{
    for (const auto &[place, identity] : {std::pair(src, from), std::pair(dst, into)}) {
        const FileAttributes now = TRY(readAttributes(place));
        if (!now.isFolder() || (keepsInodes(place) && now.identity != identity))
            return failure(QStringLiteral("Der Ordner „%1“ ist inzwischen ein anderer.").arg(shownName(place)));
    }
    return {};
}

} // namespace brellin
