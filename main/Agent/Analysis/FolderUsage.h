#pragma once

#include "Disk/FileAttributes.h"

#include <QString>

#include <array>
#include <optional>
#include <string_view>

namespace brellin {

/// Whole days that have passed, never fewer than none.
int daysBetween(Instant earlier, Instant now);

/// The last reading or changing of a file.
Instant lastUseOf(const FileAttributes &file);

/// When a file came here or was changed or read last, whichever is latest.
Instant settledSince(const FileAttributes &file);

/// Whether nobody has opened a file since it came here: neither read nor changed later than a day after. What the
/// attributes say is only true where access times are kept.
bool isNeverOpened(const FileAttributes &file);

/// Whether more than so many days have passed, to the moment.
bool isLongerAgo(Instant earlier, int days, Instant now);

/// What is in a folder with everything below it. Folders themselves do not count: their times change by looking at them.
struct FolderUsage {
    std::int64_t files = 0;        ///< regular ones, hidden ones too
    std::int64_t visibleFiles = 0; ///< without those whose name begins with a dot
    std::int64_t bytes = 0;
    std::int64_t links = 0;
    bool scripts = false; ///< some file is a script
    bool opened = false;  ///< some file was opened since it came here
    std::optional<Instant> newest;
    std::optional<Instant> lastUse;
    std::optional<Instant> settledSince; ///< of the last file that settled
    std::array<std::int64_t, 7> categories{};

    void add(std::string_view name, const FileAttributes &entry);
    void add(const FolderUsage &below);

    bool neverOpened() const { return files > 0 && !opened; }
    /// The category of most of its files; nothing without files, and where two are even.
    std::optional<QString> dominantCategory() const;
};

} // namespace brellin
