#pragma once

#include "Base/Location.h"
#include "System/FileLock.h"
#include "System/UserDefaults.h"

#include <QJsonObject>
#include <QStringList>

#include <map>
#include <mutex>

namespace brellin {

/// How large a stored file may be that is read and written: those of `longLists` hold a line for each file that the user had
/// moved, the others what a person set up.
struct StoredLimits {
    qint64 usual = qint64(16) << 20U;
    qint64 longList = qint64(256) << 20U;
    QStringList longLists = {};
};

/// Settings in a folder: "settings.json" for the plain values and a file "<key>.json" beside it for each list (a history of
/// thirty long runs is not rewritten with every switch). Every write is atomic and flushed; "settings.lock" keeps two
/// programs apart. Each long list has a lock of its own, "<key>.lock", so that a switch does not wait for a history: who
/// changes a key holds the one lock of that key and takes no other meanwhile. What was stored last stands a second time in "<key>.zuletzt-gut.json", for when somebody else damages
/// the file or takes it away. A text that did not decode stays as "<key>.beschädigt-<time>.json".
///
/// Nothing is held in memory between two calls: a copy that another program has overtaken would take its change back
/// (the file's time cannot tell two writes of one clock tick apart).
class FileUserDefaults : public UserDefaults {
public:
    /// The folder is created at the first write.
    explicit FileUserDefaults(Location folder, StoredLimits limits = {});

    std::optional<QVariant> value(const QString &key) const override;
    Result<void> setValue(const QString &key, const QVariant &value) override;
    Result<std::optional<QByteArray>> read(const QString &key) const override;
    Result<std::optional<QByteArray>> readLastGood(const QString &key) const override;
    Location fileOf(const QString &key) const override;
    Result<void> update(const QString &key,
                        const std::function<std::optional<Change>(const std::optional<QByteArray> &)> &change) override;
    Result<void> replace(const QString &key, const std::optional<QByteArray> &json) override;

private:
    /// What keeps changes of the same key apart: threads by the mutex, programs by the lock on the file.
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
    Result<QJsonObject> readValues() const;
    Result<void> removeBoth(const QString &key);
    Result<void> inPlaceOfOld(const QString &key, const std::function<Result<void>()> &act) const;

    Location m_folder;
    StoredLimits m_limits;
    Gate m_gate;                         ///< of all keys but the long lists
    std::map<QString, Gate> m_longGates; ///< complete from the beginning
};

} // namespace brellin
