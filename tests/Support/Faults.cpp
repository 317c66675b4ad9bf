#include "Support/Faults.h"

#include <csignal>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brellin::test {

void FaultPlan::killPoint()
{
    if (m_points++ == killAt)
        ::raise(SIGKILL);
}

Result<void> FaultyFileActions::renameOverReserve(const Location &from, const Location &to)
{
    struct stat status{};
    if (::lstat(from.c_str(), &status) != 0)
        return failure(Failure::lastSystem());
    const Result<void> reserved = m_plan.change<void>([&]() -> Result<void> {
        if (S_ISDIR(status.st_mode))
            return entryExists(to) ? Result<void>(failure(Failure::system(EEXIST))) : Result<void>();
        if (linking)
            return ::link(from.c_str(), to.c_str()) == 0 ? Result<void>() : failure(Failure::lastSystem());
        const int file = ::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
        return file < 0 || ::close(file) != 0 ? Result<void>(failure(Failure::lastSystem())) : Result<void>();
    });
    if (!reserved)
        return reserved;
    const Result<void> renamed = m_plan.change<void>([&]() -> Result<void> {
        const bool linked = linking && !S_ISDIR(status.st_mode);
        const int failed = linked ? ::unlink(from.c_str()) : ::rename(from.c_str(), to.c_str());
        return failed == 0 ? Result<void>() : failure(Failure::lastSystem());
    });
    if (!renamed && !S_ISDIR(status.st_mode))
        ::unlink(to.c_str());
    return renamed;
}

Result<void> FaultyFileActions::rename(const Location &from, const Location &to)
{
    if (reserving && m_volumes.same(from, to.parent_path()))
        return renameOverReserve(from, to);
    return m_plan.change<void>([&]() -> Result<void> {
        if (!m_volumes.same(from, to.parent_path()))
            return failure(Failure::system(EXDEV));
        return m_real.rename(from, to);
    });
}

Result<void> FaultyFileActions::renameHeld(const HeldFolder &from, const std::string &name, const HeldFolder &to,
                                           const std::string &newName)
{
    if (reserving)
        return failure(Failure::system(EINVAL));
    return m_plan.change<void>([&]() -> Result<void> {
        if (!m_volumes.same(from.path(), to.path()))
            return failure(Failure::system(EXDEV));
        if (beforeHeldRename)
            beforeHeldRename(from.path() / name);
        Result<void> renamed = m_real.renameHeld(from, name, to, newName);
        if (renamed && afterHeldRename)
            afterHeldRename();
        return renamed;
    });
}

Result<CopyReport> FaultyFileActions::copy(const Location &source, const Location &destination,
                                           const CopyOptions &options)
{
    return m_plan.change<CopyReport>([&] {
        Result<CopyReport> report = m_real.copy(source, destination, options);
        if (report)
            report->notKept += notKept;
        if (report && afterCopy)
            afterCopy(source, destination);
        return report;
    });
}

Result<void> FaultyFileActions::flush(const Location &location)
{
    return m_plan.change<void>([&] {
        if (beforeFlush)
            beforeFlush(location);
        return m_real.flush(location);
    });
}

Result<void> FaultyFileActions::flushVolume(const WrittenVolume &volume)
{
    return m_plan.change<void>([&] {
        if (beforeVolumeFlush)
            beforeVolumeFlush();
        return m_real.flushVolume(volume);
    });
}

Result<void> FaultyFileActions::removeOwnCopy(const Location &location)
{
    return m_plan.change<void>([&] { return m_real.removeOwnCopy(location); });
}

Result<std::vector<Location>> FaultyFileActions::removeCopied(const Location &source, const CopiedEntries &copied,
                                                              const Location &copy, const JobControl *control)
{
    return m_plan.change<std::vector<Location>>([&] { return m_real.removeCopied(source, copied, copy, control); });
}

Result<std::vector<Location>> FaultyFileActions::removeHeldByCopy(const Location &source, const Location &copy,
                                                                  Instant since, const JobControl *control)
{
    return m_plan.change<std::vector<Location>>([&] { return m_real.removeHeldByCopy(source, copy, since, control); });
}

Result<void> FaultyFileActions::removeForGood(const Location &entry)
{
    return m_plan.change<void>([&] { return m_real.removeForGood(entry); });
}

Result<std::vector<Location>> FaultyFileActions::removeSeen(const Location &entry, const SeenTree &seen)
{
    if (beforeRemoval)
        beforeRemoval(entry);
    return m_plan.change<std::vector<Location>>([&] { return m_real.removeSeen(entry, seen); });
}

Result<void> FaultyFileActions::createFolder(const Location &folder)
{
    return m_plan.change<void>([&] { return m_real.createFolder(folder); });
}

Result<void> FaultyFileActions::removeEmptyFolder(const Location &folder)
{
    return m_plan.change<void>([&] { return m_real.removeEmptyFolder(folder); });
}

Result<Location> FaultyTrash::put(const Location &entry)
{
    return m_plan.change<Location>([&] { return m_real.put(entry); });
}

Result<void> FaultyTrash::restore(const Location &trashed, const Location &original, const Location &destination)
{
    return m_plan.change<void>([&] { return m_real.restore(trashed, original, destination); });
}

Result<void>
FaultyUserDefaults::update(const QString &key,
                           const std::function<std::optional<Change>(const std::optional<QByteArray> &)> &change)
{
    return m_plan.change<void>([&] { return m_real.update(key, change); });
}

Result<void> FaultyUserDefaults::replace(const QString &key, const std::optional<QByteArray> &json)
{
    return m_plan.change<void>([&] { return m_real.replace(key, json); });
}

bool SplitVolumes::same(const Location &a, const Location &b) const
{
    return onOther(a) == onOther(b) && SystemVolumes::same(a, b);
}

Result<Location> SplitVolumes::top(const Location &location) const
{
    if (onOther(location))
        return m_other;
    return SystemVolumes::top(location);
}

} // namespace brellin::test
