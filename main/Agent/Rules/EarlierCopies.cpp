#include "Agent/Rules/EarlierCopies.h"

#include "Disk/FreeName.h"
#include "Disk/Walk.h"
#include "Runs/SameContent.h"
#include "Runs/TreeState.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <optional>
#include <set>
#include <string_view>

namespace brellin {

namespace {

/// FAT keeps times in steps of two seconds.
constexpr std::chrono::seconds timeTolerance{2};

/// Names up to this length are never shortened to make room for a number.
constexpr std::size_t uncutName = 120;

bool isAboutThen(Instant a, Instant b)
{
    return std::chrono::abs(a - b) <= timeTolerance;
}

/// The appended number of a name: 2 for "Brief (2).pdf".
std::optional<int> numberOf(std::string_view name)
{
    const std::string_view stem = stemOf(name);
    const std::size_t open = stem.rfind(" (");
    if (open == std::string_view::npos || !stem.ends_with(')'))
        return std::nullopt;
    int number = 0;
    const char *const end = stem.data() + stem.size() - 1;
    const auto read = std::from_chars(stem.data() + open + 2, end, number);
    return read.ec == std::errc() && read.ptr == end && number >= 2 ? std::optional(number) : std::nullopt;
}

std::string withoutNumber(std::string_view name)
{
    const std::string_view stem = stemOf(name);
    return std::string(stem.substr(0, stem.rfind(" ("))).append(name.substr(stem.size()));
}

/// The shortened forms of a name, for each length of the number and without one.
std::set<std::string> shortenedNames(std::string_view name, const std::string &fitting, std::size_t limit)
{
    std::set<std::string> names{fitting};
    int number = 2;
    for (int digits = 1; digits <= std::numeric_limits<int>::digits10; ++digits, number *= 10)
        names.insert(withoutNumber(numberedName(name, number, limit)));
    return names;
}

} // namespace

const EarlierCopies::Folder &EarlierCopies::entriesOf(const Location &folder)
{
    const auto [known, isNew] = m_folders.try_emplace(folder);
    if (!isNew)
        return known->second;
    const auto collect = [&](const WalkEntry &entry) {
        const Entry one{std::string(entry.name), entry.attributes};
        known->second.emplace(one.name, one);
        if (numberOf(one.name))
            known->second.emplace(withoutNumber(one.name), one);
        return WalkStep::Continue;
    };
    const WalkOptions options{
        .attributes = Attribute::Identity | Attribute::Size | Attribute::Modified, .subfolders = false, .prune = {}};
    // A missing or unreadable folder contains no copies.
    (void)walk(folder, options, collect, m_control);
    return known->second;
}

bool EarlierCopies::isCopiedPackage(const Candidate &candidate, const Location &place)
{
    const Result<TreeState> original = TreeState::of(candidate.source, m_control);
    const Result<TreeState> copy = TreeState::of(place, m_control);
    if (!original || !copy || original->entries != copy->entries || original->bytes != copy->bytes)
        return false;
    if (original->newest && copy->newest && isAboutThen(*original->newest, *copy->newest))
        return true;
    return haveSameContent(candidate.source, place, m_control);
}

bool EarlierCopies::isCopy(const Candidate &candidate, const Location &place, const FileAttributes &there)
{
    if (candidate.isPackage)
        return there.isFolder() && isCopiedPackage(candidate, place);
    if (!there.isFile() || there.size != candidate.seen.size)
        return false;
    return isAboutThen(there.modified, candidate.seen.modified) || haveSameContent(candidate.source, place, m_control);
}

/// The entries with the wanted name or a numbered form of it.
std::vector<const EarlierCopies::Entry *> EarlierCopies::namedLike(const Location &wanted)
{
    const Folder &folder = entriesOf(wanted.parent_path());
    const std::string name = wanted.filename().native();
    std::vector<const Entry *> found;
    if (name.size() <= uncutName) {
        for (auto [at, end] = folder.equal_range(name); at != end; ++at)
            found.push_back(&at->second);
        return found;
    }
    // A long name was shortened to fit its number.
    const std::size_t limit = nameLimit(wanted.parent_path());
    const std::string fitting = fittingName(name, limit);
    for (const std::string &key : shortenedNames(name, fitting, limit)) {
        for (auto [at, end] = folder.equal_range(key); at != end; ++at) {
            const Entry &entry = at->second;
            const std::optional<int> number = numberOf(entry.name);
            if (entry.name == fitting || (number && entry.name == numberedName(name, *number, limit)))
                found.push_back(&entry);
        }
    }
    return found;
}

bool EarlierCopies::hold(const Candidate &candidate)
{
    const Location folder = candidate.destination->parent_path();
    return std::ranges::any_of(namedLike(*candidate.destination), [&](const Entry *entry) {
        return isCopy(candidate, folder / entry->name, entry->attributes);
    });
}

} // namespace brellin
