#pragma once

#include "Base/Location.h"
#include "System/FileLock.h"
#include "System/UserDefaults.h"

#include <QJsonObject>
#include <QStringList>

#include <map>
#include <mutex>

namespace brellin {

/// Maximum sizes of stored files: `longLists` have a line for each file the user has moved, others only what a person
/// has entered.
struct StoredLimits {
    qint64 usual = qint64(16) << 20U;
    qint64 longList = qint64(256) << 20U;
    QStringList longLists = {};
};

/// Settings in a folder: "settings.json" for the plain values, and a file "<key>.json" for each list, so that flipping
/// a switch does not rewrite a long history. Writes are atomic and flushed. "settings.lock" serialises processes; each
/// long list has its own "<key>.lock", so that other settings do not wait for it. A change holds only the lock of its
/// key and takes no other.
///
/// "<key>.zuletzt-gut.json" is a second copy of what was stored last, in case another program damages or removes the
/// file. Text that cannot be decoded is kept as "<key>.beschädigt-<time>.json".
///
/// Nothing is cached between calls: a stale copy would revert another process's change (file times cannot tell two
/// writes within one clock tick apart).
class FileUserDefaults : public UserDefaults {
public:
    /// The folder is created at the first write. Plain values that are damaged and have no last good version start
    /// again from `fresh`.
    explicit FileUserDefaults(Location folder, StoredLimits limits = {}, QJsonObject fresh = {});

    std::optional<QVariant> value(const QString &key) const override;
    Result<void> setValue(const QString &key, const QVariant &value) override;
    Result<std::optional<QByteArray>> read(const QString &key) const override;
    std::optional<StoredVersion> version(const QString &key) const override;
    Result<std::optional<QByteArray>> readLastGood(const QString &key) const override;
    Location fileOf(const QString &key) const override;
    Result<void> update(const QString &key,
                        const std::function<std::optional<Change>(const std::optional<QByteArray> &)> &change) override;
    Result<void> replace(const QString &key, const std::optional<QByteArray> &json) override;

private:
    /// Serialises changes of a key: the mutex between threads, the lock file between processes.
    struct Gate {
        std::mutex mutex;
        Location file;
    };
    Gate &gateOf(const QString &key);
    Location lastGoodFile(const QString &key) const;
    qint64 limitOf(const QString &key) const;
    Result<std::optional<QByteArray>> readFile(const Location &file, qint64 most) const;
    Result<void> write(const QString &key, const QByteArray &json);
    static Result<FileLock> lockAgainstOthers(const Gate &gate);
    Result<void> removeBoth(const QString &key);
    Result<void> inPlaceOfOld(const QString &key, const std::function<Result<void>()> &act) const;

    Location m_folder;
    StoredLimits m_limits;
    QJsonObject m_fresh;
    Gate m_gate;                         ///< for all keys except the long lists
    std::map<QString, Gate> m_longGates; ///< complete from the beginning
};

} // namespace brellin
