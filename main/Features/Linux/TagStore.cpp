#include "Features/TagStore.h"

#include "Disk/FileAttributes.h"
#include "Features/FileTags.h"

#include <array>
#include <cerrno>

#include <sys/xattr.h>

namespace brellin {

namespace {

/// Checked first, since the system's error for symlinks is misleading.
Result<void> canCarryTags(const Location &entry)
{
    const FileAttributes attributes = TRY(readAttributes(entry));
    if (attributes.isLink())
        return failure(QStringLiteral("Eine Verknüpfung kann keine Markierung tragen."));
    if (!attributes.isFile() && !attributes.isFolder())
        return failure(QStringLiteral("Das kann keine Markierung tragen."));
    return {};
}

Failure writeFailure(int error)
{
    Failure cause = Failure::system(error);
    if (error == ENOSPC || error == E2BIG || error == ERANGE || error == EDQUOT)
        return {QStringLiteral("So viele Markierungen nimmt der Datenträger an einem Eintrag nicht auf."), cause.code};
    if (error == ENOTSUP)
        return {QStringLiteral("Auf diesem Datenträger lassen sich keine Markierungen speichern."), cause.code};
    return cause;
}

bool isNone(int error)
{
    return error == ENODATA || error == ENOTSUP;
}

} // namespace

Result<std::string> readTagValue(const Location &entry)
{
    std::array<char, 1024> usual{};
    ssize_t size = ::lgetxattr(entry.c_str(), FileTags::attribute, usual.data(), usual.size());
    if (size >= 0)
        return std::string(usual.data(), static_cast<std::size_t>(size));
    if (errno == ERANGE) {
        std::string value(65536, '\0'); // the maximum size of an extended attribute in Linux
        size = ::lgetxattr(entry.c_str(), FileTags::attribute, value.data(), value.size());
        if (size >= 0) {
            value.resize(static_cast<std::size_t>(size));
            return value;
        }
    }
    const int error = errno;
    TRY(canCarryTags(entry));
    return isNone(error) ? Result<std::string>(std::string()) : failure(Failure::system(error));
}

Result<void> writeTagValue(const Location &entry, std::string_view value)
{
    TRY(canCarryTags(entry));
    const int done = value.empty() ? ::lremovexattr(entry.c_str(), FileTags::attribute)
                                   : ::lsetxattr(entry.c_str(), FileTags::attribute, value.data(), value.size(), 0);
    if (done != 0 && !(value.empty() && isNone(errno)))
        return failure(writeFailure(errno));
    return {};
}

} // namespace brellin
