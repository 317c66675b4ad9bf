#pragma once

#include "Disk/FileAttributes.h"

#include <QString>

#include <array>
#include <optional>
#include <string_view>

namespace brellin {

/// Totals over a folder and everything below it. Ignores the times of folders, since they change by looking at them.
struct FolderUsage {
    std::int64_t files = 0;        ///< regular files, including hidden ones
    std::int64_t visibleFiles = 0; ///< without names that start with a dot
    std::int64_t bytes = 0;
    std::int64_t links = 0;
    bool scripts = false; ///< at least one file is a script
    bool opened = false;  ///< at least one file was opened since it arrived
    std::optional<Instant> newest;
    std::optional<Instant> lastUse;
    std::optional<Instant> settledSince; ///< of the file that settled last
    std::array<std::int64_t, 7> categories{};

    void add(std::string_view name, const FileAttributes &entry);
    void add(const FolderUsage &below);

    bool neverOpened() const { return files > 0 && !opened; }
    /// The category of most of its files; nullopt without files and on a tie.
    std::optional<QString> dominantCategory() const;
};

} // namespace brellin
