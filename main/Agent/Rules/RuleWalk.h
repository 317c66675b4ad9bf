#pragma once

#include "Agent/Rules/RuleConditions.h"
#include "Base/JobControl.h"
#include "Base/Result.h"
#include "Disk/FileAttributes.h"
#include "Guard/SystemLocations.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace brellin {

/// Arena for strings: views stay valid until the store is destroyed.
class TextStore {
public:
    std::string_view keep(std::string_view text);
    /// Takes over the strings of another store; views of them stay valid.
    void take(TextStore &&other);

private:
    std::vector<std::unique_ptr<char[]>> m_blocks;
    std::size_t m_left = 0;
    char *m_next = nullptr;
};

/// What a rule checks during the walk.
struct RuleFilter {
    const RuleConditions *conditions = nullptr;
    bool includeSubfolders = false;
};

/// One folder with the rules that apply to it.
struct RuleSource {
    Location folder;                 ///< standardised, as written in the rules
    std::string resolved;            ///< with symlinks resolved
    bool includeSubfolders = false;  ///< set if any rule wants them
    bool overlaps = false;           ///< another source may contain the same files
    std::vector<std::size_t> rules;  ///< indices of the enabled rules, in order
    std::vector<RuleFilter> filters; ///< one per entry of `rules`
};

/// A file that matches at least one rule. Kept small, since a folder may hold 100,000.
struct WalkedFile {
    std::string_view folder; ///< absolute
    std::string_view name;
    FileState state;
    std::optional<Instant> created;
    std::uint32_t firstFit = 0; ///< the source's first rule whose conditions hold
    bool direct = false;        ///< in the source folder itself, not in a sub-folder
    bool package = false;

    Location location() const;
};

struct WalkedName {
    std::string_view folder;
    std::string_view name;
    bool direct = false;

    auto operator<=>(const WalkedName &) const = default;
};

/// The result of walking one source. Files and names are sorted by folder, then name, bytewise, so that the order
/// depends neither on the file system nor on threads.
struct RuleWalk {
    std::vector<WalkedFile> files;    ///< excludes scripts and unfinished downloads
    std::vector<WalkedName> scripts;  ///< scripts whose text is searched for file names
    std::vector<WalkedName> awaited;  ///< final names of unfinished downloads beside them
    std::vector<WalkedName> reserved; ///< names a browser reserves with an empty file meanwhile
    std::int64_t checkedFiles = 0;    ///< all files and packages tested
    std::vector<Location> unreadable; ///< folders that count as empty, in no order
    std::vector<std::size_t> checked; ///< hashes of their resolved paths; only if the source overlaps
    TextStore texts;                  ///< backs the views above

    /// Whether an unfinished download for this file lies beside it.
    bool isAwaited(const WalkedFile &file) const;
};

/// Walks a source on all cores, tests each file against the source's rules and keeps those that match. Skips hidden
/// entries, refused folders and symlinks; treats packages as one file. Keeps access times. Unreadable folders count as
/// empty; fails only when cancelled.
Result<RuleWalk> walkSource(const RuleSource &source, const SystemLocations &locations, Instant now,
                            const JobControl *control);

} // namespace brellin
