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

    /// Whether this is the entry: the same file, changed since or not, or one that is as it was where the volume gives new
    /// numbers each time (a stick put in again).
    bool isOf(const FileAttributes &now) const;

    /// "device:inode:size:nanoseconds", and ":nanoseconds" of the birth: an inode may need all 64 bits, which a JSON number
    /// does not have.
    QString text() const;
    static std::optional<EntryMark> parse(const QString &text);
};

/// What a step has left, to be known again by its undo.
struct StepMarks {
    std::optional<EntryMark> to;
    std::optional<EntryMark> trashedOriginal;

    bool operator==(const StepMarks &) const = default;
};

} // namespace brellin
