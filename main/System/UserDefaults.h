#pragma once

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
/// entries with a copy held in memory.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    /// Nothing where the key is absent.
    virtual std::optional<QVariant> value(const QString &key) const = 0;
    virtual Result<void> setValue(const QString &key, const QVariant &value) = 0;

    /// The JSON stored under a key; nothing where it is absent or cannot be read.
    virtual std::optional<QByteArray> json(const QString &key) const = 0;

    /// What `update` does with what it read.
    struct Change {
        QByteArray json;
        /// The old data did not decode: it is kept aside under another name before it is overwritten.
        bool keepOldAside = false;
    };
    /// Reads the JSON of `key`, lets `change` make the new one (nothing: it stays as it is) and stores that, all under the
    /// settings' lock.
    virtual Result<void>
    update(const QString &key,
           const std::function<std::optional<Change>(const std::optional<QByteArray> &)> &change) = 0;
};

} // namespace brellin
