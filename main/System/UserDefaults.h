#pragma once

#include "Base/Instant.h"
#include "Base/Location.h"
#include "Base/Result.h"

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <cstdint>
#include <functional>
#include <optional>

namespace brellin {

/// What tells two states of a stored text apart without reading it.
struct StoredVersion {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    Instant modified; ///< content
    Instant changed;  ///< content or attributes

    bool operator==(const StoredVersion &) const = default;
};

/// Port to the user's settings: plain values (numbers, switches, texts, dates), and lists stored as JSON under one key
/// each. Writes take effect immediately. Thread-safe.
///
/// Change stored lists through `update`, which re-reads them, so that concurrent processes never overwrite each other's
/// entries with a stale copy. A last good version is kept of each list.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    /// nullopt if absent. Read it with `plainSetting`, which checks the type.
    virtual std::optional<QVariant> value(const QString &key) const = 0;
    virtual Result<void> setValue(const QString &key, const QVariant &value) = 0;

    /// The JSON stored under a key; nullopt if absent. Fails if it exists and cannot be read (permissions, I/O errors)
    /// or is too large (`errc::file_too_large`).
    virtual Result<std::optional<QByteArray>> read(const QString &key) const = 0;
    /// Equal to the version asked for earlier only if `read` would still give what it gave between. nullopt if that cannot
    /// be told without reading. Cheap enough to be asked before each of many steps.
    virtual std::optional<StoredVersion> version([[maybe_unused]] const QString &key) const { return std::nullopt; }
    /// The last version stored under the key, from its backup.
    virtual Result<std::optional<QByteArray>> readLastGood(const QString &key) const = 0;
    /// The file of a key, for messages.
    virtual Location fileOf(const QString &key) const = 0;

    /// The result of the callback of `update`.
    struct Change {
        QByteArray json;
        /// The old text was not decoded completely: keep it and the last good version aside under other names.
        bool keepOldAside = false;
    };
    /// Replaces the JSON of `key` with the result of `change` (nullopt: unchanged). Holds the key's lock throughout, so
    /// `change` must not change settings itself. The new text becomes the last good version.
    virtual Result<void>
    update(const QString &key,
           const std::function<std::optional<Change>(const std::optional<QByteArray> &)> &change) = 0;
    /// Moves whatever is stored under the key aside, together with its last good version, and stores `json` instead
    /// (nullopt: the key is then absent).
    virtual Result<void> replace(const QString &key, const std::optional<QByteArray> &json) = 0;

    /// Like `read`, if the reason of a failure does not matter.
    std::optional<QByteArray> json(const QString &key) const { return read(key).value_or(std::nullopt); }
};

} // namespace brellin
