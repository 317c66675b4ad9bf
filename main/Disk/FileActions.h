#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/CopyEntry.h"
#include "Disk/CopyRest.h"
#include "Disk/HeldFolder.h"
#include "Disk/SeenTree.h"
#include "Disk/WrittenVolume.h"

namespace brellin {

/// Port for everything that changes the user's files, so that tests can inject faults. The Trash is a separate port.
class FileActions {
public:
    virtual ~FileActions() = default;

    /// See `renameExclusively`.
    virtual Result<void> rename(const Location &from, const Location &to) = 0;
    /// Whether `rename` may create an empty placeholder in this folder for a moment.
    virtual bool reservesNames(const Location &folder) const = 0;
    /// See `copyEntry`.
    virtual Result<CopyReport> copy(const Location &source, const Location &destination,
                                    const CopyOptions &options) = 0;
    /// See `flushEntry`.
    virtual Result<void> flush(const Location &location) = 0;
    /// See `WrittenVolume::flush`.
    virtual Result<void> flushVolume(const WrittenVolume &volume) = 0;
    /// See `removeOwnCopy`.
    virtual Result<void> removeOwnCopy(const Location &location) = 0;
    /// See `removeCopied`.
    virtual Result<std::vector<Location>> removeCopied(const Location &source, const CopiedEntries &copied,
                                                       const Location &copy, const JobControl *control) = 0;
    /// See `removeHeldByCopy`.
    virtual Result<std::vector<Location>> removeHeldByCopy(const Location &source, const Location &copy, Instant since,
                                                           const JobControl *control) = 0;
    /// Permanently removes a file, link or folder; never follows links or enters another mount. Only after the user
    /// confirmed exactly that, never for an assistant.
    virtual Result<void> removeForGood(const Location &entry) = 0;
    /// See `removeSeen`. Only after the user confirmed exactly that; an assistant may use it for a copy it made itself,
    /// after checking that the original has the same content.
    virtual Result<std::vector<Location>> removeSeen(const Location &entry, const SeenTree &seen) = 0;
    /// Creates one folder; `errc::file_exists` if the name is taken.
    virtual Result<void> createFolder(const Location &folder) = 0;
    /// Removes one folder if it is empty, otherwise fails with `errc::directory_not_empty`.
    virtual Result<void> removeEmptyFolder(const Location &folder) = 0;
    /// `rename` between two open folders, only if the system supports that exclusively. After any failure the caller
    /// may try `rename`.
    virtual Result<void> renameHeld(const HeldFolder &from, const std::string &name, const HeldFolder &to,
                                    const std::string &newName)
    {
        return rename(from.path() / name, to.path() / newName);
    }
};

/// The real implementation.
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
