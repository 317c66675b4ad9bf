#pragma once

#include "Disk/FileAttributes.h"

#include <QString>

#include <optional>
#include <string>

namespace brellin {

/// Identifies an entry days later, when its name may belong to another.
struct EntryMark {
    FileState state;
    /// Birth time, if the volume stores it: freed inode numbers are reused.
    std::optional<Instant> created = {}; // NOLINT(readability-redundant-member-init): else initialisers must name it

    bool operator==(const EntryMark &) const = default;

    /// Mark of the present entry; none if it cannot be examined.
    static std::optional<EntryMark> of(const Location &location);
    static EntryMark of(const FileAttributes &now) { return {FileState::of(now), now.created}; }

    /// Whether this is the marked entry. With birth times compares birth and inode, so that the entry may have changed;
    /// otherwise, or if the volume assigns new inodes on each mount, size and modification time.
    bool isOf(const FileAttributes &now) const;

    /// As above for an entry that may have moved anywhere: requires the same inode, and the same birth or the same size
    /// and time to exclude reuse. Ignores the device, whose number may change at a restart.
    bool isSame(const FileAttributes &now) const;
    /// Whether the entry at `location` is the same, by isSame().
    bool isAt(const Location &location) const;

    /// "device:inode:size:nanoseconds", then ":nanoseconds" of the birth if known. Text, since JSON numbers do not hold
    /// 64 bits.
    QString text() const { return QString::fromStdString(ascii()); }
    std::string ascii() const; ///< the same
    static std::optional<EntryMark> parse(const QString &text);
};

} // namespace brellin
