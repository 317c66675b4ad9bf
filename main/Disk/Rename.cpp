#include "Disk/Rename.h"

#include "Disk/CopyTreeRemoval.h"
#include "Disk/FreeName.h"

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace brellin {

namespace {

/// Whether the file system (NFS, 9p, many FUSE ones) has no exclusive rename.
bool isRefusal(int error)
{
    // NOLINTNEXTLINE(misc-redundant-expression): equal on Linux, different elsewhere
    return error == EINVAL || error == ENOSYS || error == ENOTSUP || error == EOPNOTSUPP;
}

bool leadsTo(NameIn name, const struct stat &entry)
{
    const auto status = statusOf(name);
    return status && sameEntry(*status, entry);
}

QString foldedName(NameIn entry)
{
    return folded(shown(std::string_view(entry.name)));
}

/// Whether both names refer to one entry, because the volume ignores case or composition. Two hard links may look the
/// same; renaming through a third name then finds the target taken.
bool differOnlyInCase(NameIn from, NameIn to)
{
    const auto fromFolder = statusOf({from.folder, "."});
    const auto toFolder = statusOf({to.folder, "."});
    const auto entry = statusOf(from);
    return fromFolder && toFolder && entry && sameEntry(*fromFolder, *toFolder) && leadsTo(to, *entry) &&
           std::string_view(from.name) != to.name && foldedName(from) == foldedName(to);
}

/// Uses a numbered name in between, which is meaningful if the program dies then.
Result<void> renameThroughThirdName(NameIn from, NameIn to, SystemRename rename)
{
    std::string third;
    for (int number = 2;; ++number) {
        third = numberedName(to.name, number);
        const auto aside = renameExclusively(from, {to.folder, third.c_str()}, rename);
        if (aside)
            break;
        if (!aside.error().is(std::errc::file_exists) || number > 1000)
            return aside;
    }
    const NameIn between{to.folder, third.c_str()};
    auto done = renameExclusively(between, to, rename);
    if (!done && !renameExclusively(between, from, rename)) {
        return failure(Failure{QStringLiteral("Das Umbenennen brach ab; der Eintrag heißt jetzt „%1“.")
                                   .arg(shown(std::string_view(third))),
                               done.error().code});
    }
    return done;
}

/// Creates a hard link and removes the old name, so that the file appears completely and never replaces anything.
/// Requires that both names report the same inode: otherwise the old name would be kept as another file's.
Result<void> renameByLink(NameIn from, NameIn to)
{
    if (::linkat(from.folder, from.name, to.folder, to.name, 0) != 0)
        return failure(Failure::lastSystem());
    const Result<struct stat> linked = statusOf(to);
    // Another entry has taken the old name meanwhile: keep it.
    if (linked && !leadsTo(from, *linked))
        return {};
    if (::unlinkat(from.folder, from.name, 0) == 0)
        return {};
    const Failure why = Failure::lastSystem();
    // Undo only while the old name certainly refers to the same file.
    if (linked && leadsTo(from, *linked) && leadsTo(to, *linked))
        ::unlinkat(to.folder, to.name, 0);
    return failure(why);
}

/// For file systems known to have neither exclusive rename nor hard links: creates an empty placeholder and renames
/// over it.
Result<void> renameOverReserved(NameIn from, NameIn to)
{
    const Descriptor reserved(
        ::openat(to.folder, to.name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
    struct stat ours{};
    if (!reserved.isOpen() || ::fstat(reserved.number(), &ours) != 0)
        return failure(Failure::lastSystem());
    const auto stillOurs = [&] {
        const auto status = statusOf(to);
        return status && sameEntry(*status, ours) && status->st_size == 0;
    };
    if (!stillOurs())
        return failure(Failure::system(EEXIST));
    if (::renameat(from.folder, from.name, to.folder, to.name) == 0)
        return {};
    const Failure why = Failure::lastSystem();
    if (stillOurs())
        ::unlinkat(to.folder, to.name, 0);
    return failure(why);
}

Result<void> checkFree(NameIn name)
{
    const auto there = statusOf(name);
    if (there || !there.error().is(std::errc::no_such_file_or_directory))
        return failure(there ? Failure::system(EEXIST) : there.error());
    return {};
}

/// A plain rename can only replace an empty folder. At worst an empty folder created between check and rename is lost,
/// never a file.
Result<void> renameFolderOntoFreeName(NameIn from, NameIn to)
{
    TRY(checkFree(to));
    if (::renameat(from.folder, from.name, to.folder, to.name) == 0)
        return {};
    if (errno == EINVAL)
        return failure(Failure{QStringLiteral("Ein Ordner kann nicht in sich selbst liegen."),
                               std::make_error_code(std::errc::invalid_argument)});
    return failure(Failure::system(errno == ENOTEMPTY || errno == ENOTDIR ? EEXIST : errno));
}

Result<void> renameFileOntoFreeName(NameIn from, NameIn to)
{
    TRY(checkFree(to));
    if (::renameat(from.folder, from.name, to.folder, to.name) == 0)
        return {};
    return failure(Failure::system(errno == EISDIR ? EEXIST : errno));
}

/// Renames a file if neither exclusive rename nor hard links work.
using LastResort = Result<void> (*)(NameIn from, NameIn to);

Result<void> renameWithoutSystem(NameIn from, NameIn to, LastResort lastResort)
{
    const struct stat entry = TRY(statusOf(from));
    if (S_ISDIR(entry.st_mode))
        return renameFolderOntoFreeName(from, to);
    if (knownBy(to.folder) == OwnEntries::KnownBy::Path)
        return lastResort(from, to);
    auto linked = renameByLink(from, to);
    if (linked)
        return linked;
    const int error = linked.error().code.value();
    return error == EPERM || error == EMLINK || isRefusal(error) ? lastResort(from, to) : linked;
}

} // namespace

Result<void> renameExclusively(NameIn from, NameIn to, SystemRename rename)
{
    const int error = rename(from, to);
    if (error == 0)
        return {};
    Result<void> outcome = failure(Failure::system(error));
    if (isRefusal(error))
        outcome = renameWithoutSystem(from, to, renameOverReserved);
    if (!outcome && outcome.error().is(std::errc::file_exists) && differOnlyInCase(from, to))
        return renameThroughThirdName(from, to, rename);
    return outcome;
}

Result<void> renameToReserved(NameIn from, NameIn to, SystemRename rename)
{
    const int error = rename(from, to);
    if (error == 0)
        return {};
    return isRefusal(error) ? renameWithoutSystem(from, to, renameFileOntoFreeName) : failure(Failure::system(error));
}

Result<void> renameExclusively(const Location &from, const Location &to)
{
    const EntryPlace source = TRY(openPlace(from));
    const EntryPlace target = TRY(openPlace(to));
    return renameExclusively(source.at(), target.at());
}

} // namespace brellin
