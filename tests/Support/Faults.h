#pragma once

#include "Disk/FileActions.h"
#include "Disk/Trash.h"
#include "Disk/Volumes.h"
#include "System/UserDefaults.h"

#include <functional>

namespace brellin::test {

/// Controls fault injection at the n-th change that goes through the faulty ports below.
class FaultPlan {
public:
    /// The change with this number (from 0) fails with `error` without any effect; -1: none.
    int failAt = -1;
    int error = EIO;
    /// Kills the process at this point; each change has one point before and one after it; -1: never.
    int killAt = -1;

    /// Performs one change.
    template <class T>
    Result<T> change(const std::function<Result<T>()> &act)
    {
        killPoint();
        if (m_changes++ == failAt)
            return failure(Failure::system(error));
        Result<T> result = act();
        killPoint();
        return result;
    }
    int changes() const { return m_changes; }

private:
    void killPoint();

    int m_changes = 0;
    int m_points = 0;
};

/// The real file actions with fault injection. Renames between two volumes of `volumes` fail as in reality.
class FaultyFileActions : public FileActions {
public:
    FaultyFileActions(FaultPlan &plan, const Volumes &volumes) : m_plan(plan), m_volumes(volumes) {}

    Result<void> rename(const Location &from, const Location &to) override;
    Result<void> renameHeld(const HeldFolder &from, const std::string &name, const HeldFolder &to,
                            const std::string &newName) override;
    Result<CopyReport> copy(const Location &source, const Location &destination, const CopyOptions &options) override;
    Result<void> flush(const Location &location) override;
    Result<void> flushVolume(const WrittenVolume &volume) override;
    Result<void> removeOwnCopy(const Location &location) override;
    Result<std::vector<Location>> removeCopied(const Location &source, const CopiedEntries &copied,
                                               const Location &copy, const JobControl *control) override;
    bool reservesNames(const Location &) const override { return reserving; }
    Result<std::vector<Location>> removeHeldByCopy(const Location &source, const Location &copy, Instant since,
                                                   const JobControl *control) override;
    Result<void> removeForGood(const Location &entry) override;
    Result<std::vector<Location>> removeSeen(const Location &entry, const SeenTree &seen) override;
    Result<void> createFolder(const Location &folder) override;
    Result<void> removeEmptyFolder(const Location &folder) override;

    /// Renames files as on volumes with neither exclusive rename nor hard links, in two changes: creates an empty file
    /// to reserve the name, then renames the entry over it.
    bool reserving = false;
    /// In addition to `reserving`: as on volumes with hard links, in two changes: links the new name, then removes the
    /// old one.
    bool linking = false;
    /// Called after each copy; a test can corrupt it here.
    std::function<void(const Location &source, const Location &copy)> afterCopy;
    /// Called before each flush of an entry.
    std::function<void(const Location &entry)> beforeFlush;
    /// Called before each flush of a volume.
    std::function<void()> beforeVolumeFlush;
    /// Called right before entries are removed for good; a test can add to them here.
    std::function<void(const Location &entry)> beforeRemoval;
    /// What each copy reports as not preserved.
    QStringList notKept;
    /// Called before each rename between held folders; a test can swap folders here.
    std::function<void(const Location &from)> beforeHeldRename;
    /// Called after each of them that succeeded, between two steps of a series.
    std::function<void()> afterHeldRename;

private:
    Result<void> renameOverReserve(const Location &from, const Location &to);

    FaultPlan &m_plan;
    const Volumes &m_volumes;
    DiskFileActions m_real;
};

/// Wraps a Trash with fault injection.
class FaultyTrash : public Trash {
public:
    FaultyTrash(FaultPlan &plan, Trash &real) : m_plan(plan), m_real(real) {}

    Result<Location> put(const Location &entry) override;
    bool possible(const Location &entry) const override { return m_real.possible(entry); }
    Result<void> restore(const Location &trashed, const Location &original, const Location &destination) override;
    std::optional<Location> find(const Location &original, const FileIdentity &identity) const override
    {
        return m_real.find(original, identity);
    }
    bool holds(const Location &location) const override { return m_real.holds(location); }

private:
    FaultPlan &m_plan;
    Trash &m_real;
};

/// Wraps settings with fault injection on storing lists.
class FaultyUserDefaults : public UserDefaults {
public:
    FaultyUserDefaults(FaultPlan &plan, UserDefaults &real) : m_plan(plan), m_real(real) {}

    std::optional<QVariant> value(const QString &key) const override { return m_real.value(key); }
    Result<void> setValue(const QString &key, const QVariant &value) override { return m_real.setValue(key, value); }
    Result<std::optional<QByteArray>> read(const QString &key) const override { return m_real.read(key); }
    Result<std::optional<QByteArray>> readLastGood(const QString &key) const override
    {
        return m_real.readLastGood(key);
    }
    Location fileOf(const QString &key) const override { return m_real.fileOf(key); }
    Result<void> update(const QString &key,
                        const std::function<std::optional<Change>(const std::optional<QByteArray> &)> &change) override;
    Result<void> replace(const QString &key, const std::optional<QByteArray> &json) override;

private:
    FaultPlan &m_plan;
    UserDefaults &m_real;
};

/// Makes one folder count as a volume of its own.
class SplitVolumes : public SystemVolumes {
public:
    explicit SplitVolumes(Location other) : m_other(std::move(other)) {}

    bool same(const Location &a, const Location &b) const override;
    Result<Location> top(const Location &location) const override;

private:
    bool onOther(const Location &location) const { return isAtOrBelow(location, m_other); }

    Location m_other;
};

} // namespace brellin::test
