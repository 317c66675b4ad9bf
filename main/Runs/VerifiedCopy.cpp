#include "Runs/VerifiedCopy.h"

#include "Disk/Digest.h"
#include "Disk/FileAttributes.h"
#include "Disk/Walk.h"

#include <algorithm>
#include <map>
#include <string>

namespace brellin {

namespace {

/// Up to this size a single file is compared by content; inside a folder only files below it.
constexpr std::int64_t digestLimit = 2'000'000'000;

bool sameContent(const Location &original, const Location &copy, JobControl *control)
{
    const Result<QByteArray> first = sha256(original, control);
    const Result<QByteArray> second = sha256(copy, control);
    if (control && control->cancelled())
        return false;
    return first.has_value() == second.has_value() && (!first || *first == *second);
}

/// Relative path and size of the regular files below a folder.
Result<std::map<std::string, std::int64_t>> filesBelow(const Location &folder, const JobControl *control)
{
    std::map<std::string, std::int64_t> files;
    const std::size_t prefix = folder.native().size() + 1;
    const auto collect = [&](const WalkEntry &entry) {
        if (entry.attributes.isFile()) {
            std::string path(entry.folder);
            path.append("/").append(entry.name);
            files.emplace(path.substr(prefix), entry.unreadable ? -1 : entry.attributes.size);
        }
        return WalkStep::Continue;
    };
    const WalkOutcome outcome = TRY(walk(folder, {.attributes = Attribute::Size, .prune = {}}, collect, control));
    // Unreadable folders cannot be known to be equal.
    if (!outcome.unreadable.empty())
        return failure(Failure::system(EACCES));
    return files;
}

bool verifyFolder(const Location &original, const Location &copy, JobControl *control)
{
    const auto originals = filesBelow(original, control);
    const auto copies = filesBelow(copy, control);
    if (!originals || !copies || *originals != *copies)
        return false;
    return std::ranges::all_of(*originals, [&](const auto &file) {
        const auto &[path, size] = file;
        return size >= digestLimit || sameContent(original / path, copy / path, control);
    });
}

bool sameTarget(const Location &original, const Location &copy)
{
    std::error_code error;
    const Location first = std::filesystem::read_symlink(original, error);
    return !error && first == std::filesystem::read_symlink(copy, error) && !error;
}

} // namespace

bool verifyCopy(const Location &original, const Location &copy, JobControl *control)
{
    const Result<FileAttributes> first = readAttributes(original);
    const Result<FileAttributes> second = readAttributes(copy);
    if (!first || !second || first->kind != second->kind)
        return false;
    if (first->isLink())
        return sameTarget(original, copy);
    if (first->isFolder())
        return verifyFolder(original, copy, control);
    return first->size == second->size && (first->size > digestLimit || sameContent(original, copy, control));
}

} // namespace brellin
