#include "System/AtomicWrite.h"

#include "Base/Descriptor.h"

#include <cerrno>
#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

namespace brellin {

namespace {

enum class Flush { No, Yes };

Result<void> writeAll(int descriptor, const QByteArray &content)
{
    for (qsizetype at = 0; at < content.size();) {
        const ssize_t written =
            ::write(descriptor, content.constData() + at, static_cast<std::size_t>(content.size() - at));
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return failure(Failure::lastSystem());
        at += written;
    }
    return {};
}

Result<void> flushFolder(const Location &folder)
{
    const Descriptor open(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!open.isOpen() || ::fsync(open.number()) != 0)
        return failure(Failure::lastSystem());
    return {};
}

Result<void> replaceContent(const Location &file, const QByteArray &content, Flush flush)
{
    // Settings may be a symlink to a file elsewhere.
    std::error_code unresolved;
    Location target = std::filesystem::canonical(file, unresolved);
    if (unresolved)
        target = file;
    std::string pattern = target.native() + ".XXXXXX";
    const Descriptor open(::mkostemp(pattern.data(), O_CLOEXEC));
    if (!open.isOpen())
        return failure(Failure::lastSystem());
    Result<void> written = writeAll(open.number(), content);
    if (written && flush == Flush::Yes && ::fsync(open.number()) != 0)
        written = failure(Failure::lastSystem());
    if (written && ::rename(pattern.c_str(), target.c_str()) != 0)
        written = failure(Failure::lastSystem());
    if (!written) {
        ::unlink(pattern.c_str());
        return written;
    }
    if (flush == Flush::No)
        return {};
    return flushFolder(target.has_parent_path() ? target.parent_path() : Location("."));
}

} // namespace

Result<void> writeAtomically(const Location &file, const QByteArray &content)
{
    return replaceContent(file, content, Flush::Yes);
}

Result<void> writeUnflushed(const Location &file, const QByteArray &content)
{
    return replaceContent(file, content, Flush::No);
}

} // namespace brellin
