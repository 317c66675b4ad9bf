#include "Runs/SameContent.h"

#include "Disk/Digest.h"
#include "Disk/FileAttributes.h"
#include "Disk/Walk.h"

#include <algorithm>
#include <map>
#include <string>

namespace brellin {

namespace {

bool sameFile(const Location &a, const Location &b, JobControl *control)
{
    const Result<QByteArray> first = sha256(a, control);
    const Result<QByteArray> second = sha256(b, control);
    return first && second && *first == *second;
}

struct ComparedEntry {
    EntryKind kind = EntryKind::Special;
    std::int64_t size = 0;
    std::string target; ///< of a symlink

    bool operator==(const ComparedEntry &) const = default;
};

/// Everything below a folder by relative path; nullopt if any of it cannot be examined.
std::optional<std::map<std::string, ComparedEntry>> entriesBelow(const Location &folder, const JobControl *control)
{
    std::map<std::string, ComparedEntry> entries;
    bool complete = true;
    const std::size_t prefix = folder.native().size() + 1;
    const auto collect = [&](const WalkEntry &entry) {
        ComparedEntry one{entry.attributes.kind, 0, {}};
        if (one.kind == EntryKind::File)
            one.size = entry.attributes.size;
        std::error_code error;
        if (one.kind == EntryKind::Link)
            one.target = std::filesystem::read_symlink(entry.location(), error).native();
        complete = complete && !entry.unreadable && !error && one.kind != EntryKind::Special;
        std::string path(entry.folder);
        path.append("/").append(entry.name);
        entries.emplace(path.substr(prefix), one);
        return complete ? WalkStep::Continue : WalkStep::Stop;
    };
    const Result<WalkOutcome> outcome = walk(folder, {.attributes = Attribute::Size, .prune = {}}, collect, control);
    if (!outcome || !outcome->unreadable.empty() || !complete)
        return std::nullopt;
    return entries;
}

bool sameFolder(const Location &a, const Location &b, JobControl *control)
{
    const auto first = entriesBelow(a, control);
    const auto second = entriesBelow(b, control);
    if (!first || !second || *first != *second)
        return false;
    return std::ranges::all_of(*first, [&](const auto &one) {
        const auto &[path, entry] = one;
        return entry.kind != EntryKind::File || sameFile(a / path, b / path, control);
    });
}

} // namespace

bool haveSameContent(const Location &a, const Location &b, JobControl *control)
{
    const Result<FileAttributes> first = readAttributes(a);
    const Result<FileAttributes> second = readAttributes(b);
    if (!first || !second || first->kind != second->kind || first->identity == second->identity)
        return false;
    if (first->isFile())
        return first->size == second->size && sameFile(a, b, control);
    return first->isFolder() && sameFolder(standardised(a), standardised(b), control);
}

} // namespace brellin
