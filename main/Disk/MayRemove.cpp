#include "Disk/MayRemove.h"

#include "Disk/EntryPlace.h"
#include "Disk/FileAttributes.h"

#include <fcntl.h>
#include <unistd.h>

namespace brellin {

namespace {

Failure staysBecause(const QString &why)
{
    return {QStringLiteral("Das Original lässt sich nicht entfernen, denn ") + why,
            std::make_error_code(std::errc::operation_not_permitted)};
}

Result<void> checkMayChange(const Location &folder)
{
    if (isLocked(folder))
        return failure(staysBecause(QStringLiteral("„%1“ ist gegen Änderungen gesperrt.").arg(shownName(folder))));
    if (::faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0)
        return {};
    const Failure why = Failure::lastSystem();
    return failure(Failure{QStringLiteral("Das Original lässt sich nicht entfernen, denn in „%1“ kann nichts geändert "
                                          "werden: %2")
                               .arg(shownName(folder), why.message),
                           why.code});
}

Result<void> checkMayLeave(const Location &entry, const Location &folder)
{
    if (isLocked(entry))
        return failure(staysBecause(QStringLiteral("„%1“ ist gegen Änderungen gesperrt.").arg(shownName(entry))));
    const auto at = [](const Location &place) { return statusOf({AT_FDCWD, place.c_str()}); };
    if (isKeptBySticky(TRY(at(folder / ".")), TRY(at(entry))))
        return failure(
            staysBecause(QStringLiteral("aus „%1“ kann jeder nur entfernen, was ihm gehört.").arg(shownName(folder))));
    return {};
}

} // namespace

bool isKeptBySticky(const struct stat &folder, const struct stat &entry)
{
    const uid_t user = ::geteuid();
    return (folder.st_mode & S_ISVTX) != 0 && user != 0 && entry.st_uid != user && folder.st_uid != user;
}

Result<void> checkMayRemove(const Location &entry)
{
    const FileAttributes attributes = TRY(readAttributes(entry));
    const Location folder = standardised(entry).parent_path();
    TRY(checkMayChange(folder));
    TRY(checkMayLeave(entry, folder));
    return attributes.isFolder() ? checkMayEmpty(entry) : Result<void>();
}

Result<void> checkMayEmpty(const Location &folder)
{
    Result<void> may = checkMayChange(folder);
    const bool refused =
        !may && (may.error().is(std::errc::permission_denied) || may.error().is(std::errc::operation_not_permitted) ||
                 may.error().is(std::errc::read_only_file_system));
    std::error_code unknown;
    return refused && !std::filesystem::is_empty(folder, unknown) ? may : Result<void>();
}

} // namespace brellin
