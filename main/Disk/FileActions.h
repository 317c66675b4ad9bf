#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/CopyEntry.h"
#include "Disk/CopyRest.h"
#include "Disk/HeldFolder.h"
#include "Disk/SeenTree.h"
#include "Disk/WrittenVolume.h"

namespace brellin {

/// The port for everything that changes the user's files: what a fault can hit. The Trash is a port of its own.
class FileActions {
public:
    virtual ~FileActions() = default;

    /// As `renameExclusively`.
    virtual Result<void> rename(const Location &from, const Location &to) = 0;
    /// Whether that may keep a name in this folder free with an empty file for a moment.
    virtual bool reservesNames(const Location &folder) const = 0;
    /// As `copyEntry`.
    virtual Result<CopyReport> copy(const Location &source, const Location &destination,
                                    const CopyOptions &options) = 0;
    /// As `flushEntry`.
    virtual Result<void> flush(const Location &location) = 0;
    /// As `WrittenVolume::flush`.
    virtual Result<void> flushVolume(const WrittenVolume &volume) = 0;
    /// As `removeOwnCopy`.
    virtual Result<void> removeOwnCopy(const Location &location) = 0;
    /// As `removeCopied`.
    virtual Result<std::vector<Location>> removeCopied(const Location &source, const CopiedEntries &copied,
                                                       const Location &copy, const JobControl *control) = 0;
    /// As `removeHeldByCopy`.
    virtual Result<std::vector<Location>> removeHeldByCopy(const Location &source, const Location &copy, Instant since,
                                                           const JobControl *control) = 0;
    /// Removes a file, link or whole folder for good, never following a link and never into another mount. Only on the
    /// user's own yes to exactly that; never for an assistant.
    virtual Result<void> removeForGood(const Location &entry) = 0;
    /// As `removeSeen`. On the user's own yes to exactly that; an assistant's, of a copy that it made itself and whose original
    /// was just seen to hold the same.
    virtual Result<std::vector<Location>> removeSeen(const Location &entry, const SeenTree &seen) = 0;
    /// Creates one folder; `errc::file_exists` where anything has the name.
    virtual Result<void> createFolder(const Location &folder) = 0;
    /// Removes one folder if it is empty (`errc::directory_not_empty` else), never more.
    virtual Result<void> removeEmptyFolder(const Location &folder) = 0;
    /// As `rename` between two folders that are held open, and only where the system itself can do it exclusively: any
    /// failure may be followed by `rename`.
    virtual Result<void> renameHeld(const HeldFolder &from, const std::string &name, const HeldFolder &to,
                                    const std::string &newName)
    {
        return rename(from.path() / name, to.path() / newName);
    }
};

/// The real ones.
class DiskFileActions : public FileActions {
public:
    Result<void> rename(const Location &from, const Location &to) override;
    bool reservesNames(const Location &folder) const override;
    Result<void> renameHeld(const HeldFolder &from, const std::string &name, const HeldFolder &to,
                            const std::string &newName) override;
    Result<CopyReport> copy(const Location &source, const Location &destination, const CopyOptions &options) override;
    Result<void> flush(const Location &location) override;
    Result<void> flushVolume(const WrittenVolume &volume) override;
    Result<void> removeOwnCopy(const Location &location) override;
    Result<std::vector<Location>> removeCopied(const Location &source, const CopiedEntries &copied,
                                               const Location &copy, const JobControl *control) override;
    Result<std::vector<Location>> removeHeldByCopy(const Location &source, const Location &copy, Instant since,
                                                   const JobControl *control) override;
    Result<void> removeForGood(const Location &entry) override;
    Result<std::vector<Location>> removeSeen(const Location &entry, const SeenTree &seen) override;
    Result<void> createFolder(const Location &folder) override;
    Result<void> removeEmptyFolder(const Location &folder) override;
};

} // namespace brellin
