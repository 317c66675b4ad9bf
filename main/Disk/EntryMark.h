#pragma once

#include "Disk/FileAttributes.h"

#include <QString>

#include <optional>

namespace brellin {

/// By what an entry is known again days later, when its name may belong to another.
struct EntryMark {
    FileState state;
    /// Its birth, where the volume keeps it: a freed inode number is given to the next file.
    std::optional<Instant> created = {}; // NOLINT(readability-redundant-member-init): else initialisers must name it

    bool operator==(const EntryMark &) const = default;

    /// Of what lies there now; nothing where that cannot be examined.
    static std::optional<EntryMark> of(const Location &location);
    static EntryMark of(const FileAttributes &now) { return {FileState::of(now), now.created}; }

    /// Whether this is the entry. Where the volume keeps births, by birth and number, changed since or not; else, and where it
    /// gives new numbers each time (a stick put in again), by size and time, so that a changed one is not known.
    bool isOf(const FileAttributes &now) const;

    /// The same of an entry that may be anywhere by now, so that nothing but itself tells: its number, and that this was not
    /// given to another since, by the birth or by size and time. The number of a device is another after a new start.
    bool isSame(const FileAttributes &now) const;
    /// Whether what lies there is the same.
    bool isAt(const Location &location) const;

    /// "device:inode:size:nanoseconds", and ":nanoseconds" of the birth: an inode may need all 64 bits, which a JSON number
    /// does not have.
    QString text() const;
    static std::optional<EntryMark> parse(const QString &text);
};

} // namespace brellin
