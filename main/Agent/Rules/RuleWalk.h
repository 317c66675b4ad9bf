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

/// Texts that stay where they are put until all of them go.
class TextStore {
public:
    std::string_view keep(std::string_view text);
    /// Takes over the texts of another store; views of them stay valid.
    void take(TextStore &&other);

private:
    std::vector<std::unique_ptr<char[]>> m_blocks;
    std::size_t m_left = 0;
    char *m_next = nullptr;
};

/// What a rule asks of a file before anything else is worked out.
struct RuleFilter {
    const RuleConditions *conditions = nullptr;
    bool includeSubfolders = false;
};

/// One folder that rules look into.
struct RuleSource {
    Location folder;                 ///< standardised, as the rules name it
    std::string resolved;            ///< with its links resolved
    bool includeSubfolders = false;  ///< some rule wants them
    bool overlaps = false;           ///< its files may be those of another source as well
    std::vector<std::size_t> rules;  ///< numbers of the active rules, in their order
    std::vector<RuleFilter> filters; ///< one for each of `rules`
};

/// A file that fits at least one rule; small, for a folder may hold a hundred thousand.
struct WalkedFile {
    std::string_view folder; ///< absolute
    std::string_view name;
    FileState state;
    std::optional<Instant> created;
    std::uint32_t firstFit = 0; ///< the first of the source's rules whose conditions hold
    bool direct = false;        ///< lies in the source itself, not in a sub-folder
    bool package = false;

    Location location() const;
};

struct WalkedName {
    std::string_view folder;
    std::string_view name;
    bool direct = false;

    auto operator<=>(const WalkedName &) const = default;
};

/// What walking one source found. The files and names are sorted by folder, then name, byte by byte: the order does not
/// depend on the file system or on threads.
struct RuleWalk {
    std::vector<WalkedFile> files;    ///< without scripts and half-written downloads
    std::vector<WalkedName> scripts;  ///< those whose texts are to be searched for names
    std::vector<WalkedName> awaited;  ///< names of files that a half-written download beside them will replace
    std::vector<WalkedName> reserved; ///< … and of those that a browser keeps empty until then
    std::int64_t checkedFiles = 0;    ///< all files and packages that were looked at
    std::vector<std::size_t> checked; ///< the hashes of their resolved paths, of an overlapping source only
    TextStore texts;                  ///< what the views above look at

    /// Whether a half-written download lies beside a file.
    bool isAwaited(const WalkedFile &file) const;
};

/// Walks a source with all cores, tests each file against the source's rules on the way and keeps the ones that fit. Hidden
/// entries and what lies in refused folders are not looked at, packages count as one file, links do not count. Access times
/// stay. A folder that cannot be read gives nothing; fails only when cancelled.
Result<RuleWalk> walkSource(const RuleSource &source, const SystemLocations &locations, Instant now,
                            const JobControl *control);

} // namespace brellin
