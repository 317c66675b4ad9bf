#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <functional>
#include <optional>

namespace brellin {

/// The port to the user's settings: plain values (numbers, switches, texts, dates) and lists kept as JSON, one entry per
/// key. Everything is written at once. Callable from every thread.
///
/// A stored list is changed through `update`, which reads it freshly, so that two programs never overwrite each other's
/// entries with a copy held in memory. Each list keeps its last good version beside it.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    /// Nothing where the key is absent. Read through `plainSetting`, which checks the type.
    virtual std::optional<QVariant> value(const QString &key) const = 0;
    virtual Result<void> setValue(const QString &key, const QVariant &value) = 0;

    /// The JSON stored under a key; nothing where it is absent. A failure: something is there and cannot be read (rights, a
    /// broken disk), or is larger than a file of its kind may be (`errc::file_too_large`).
    virtual Result<std::optional<QByteArray>> read(const QString &key) const = 0;
    /// What `update` stored last under a key, kept apart from it.
    virtual Result<std::optional<QByteArray>> readLastGood(const QString &key) const = 0;
    /// The file that holds a key's JSON, for messages.
    virtual Location fileOf(const QString &key) const = 0;

    /// What `update` does with what it read.
    struct Change {
        QByteArray json;
        /// The old data did not decode whole: it is kept aside under another name before it is overwritten, and with it the
        /// last good version.
        bool keepOldAside = false;
    };
    /// Reads the JSON of `key`, lets `change` make the new one (nothing: it stays as it is) and stores that, all under the
    /// key's lock, so `change` changes nothing here itself. The new one is the last good version from then on.
    virtual Result<void>
    update(const QString &key,
           const std::function<std::optional<Change>(const std::optional<QByteArray> &)> &change) = 0;
    /// Puts what is stored under a key aside, whatever it is, together with its last good version, and stores `json` in its
    /// place (nothing: the key is absent afterwards).
    virtual Result<void> replace(const QString &key, const std::optional<QByteArray> &json) = 0;

    /// The same as `read`, for whom the reason does not matter.
    std::optional<QByteArray> json(const QString &key) const { return read(key).value_or(std::nullopt); }
};

} // namespace brellin
