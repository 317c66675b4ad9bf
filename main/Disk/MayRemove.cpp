#include "Disk/MayRemove.h"

#include "Disk/FileAttributes.h"

#include <fcntl.h>
#include <unistd.h>

namespace brellin {

namespace {

Result<void> checkMayChange(const Location &folder)
{
    if (::faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0)
        return {};
    const Failure why = Failure::lastSystem();
    return failure(Failure{QStringLiteral("Das Original lässt sich nicht entfernen, denn in „%1“ kann nichts geändert "
                                          "werden: %2")
                               .arg(shownName(folder), why.message),
                           why.code});
}

} // namespace

Result<void> checkMayRemove(const Location &entry)
{
    const FileAttributes attributes = TRY(readAttributes(entry));
    TRY(checkMayChange(standardised(entry).parent_path()));
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
