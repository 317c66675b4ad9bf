#pragma once

#include "Base/Location.h"
#include "System/FileLock.h"
#include "System/UserDefaults.h"

#include <QJsonObject>

#include <mutex>

namespace brellin {

/// Settings in a folder: "settings.json" for the plain values and a file "<key>.json" beside it for each list (a history of
/// thirty long runs is not rewritten with every switch). Every write is atomic and flushed; "settings.lock" keeps two
/// programs apart. A text in which an older list did not decode stays as "<key>.beschädigt-<time>.json".
///
/// Nothing is held in memory between two calls: a copy that another program has overtaken would take its change back
/// (the file's time cannot tell two writes of one clock tick apart).
class FileUserDefaults : public UserDefaults {
public:
    /// The folder is created at the first write.
    explicit FileUserDefaults(Location folder);

    std::optional<QVariant> value(const QString &key) const override;
    Result<void> setValue(const QString &key, const QVariant &value) override;
    std::optional<QByteArray> json(const QString &key) const override;
    Result<void> update(const QString &key,
                        const std::function<std::optional<Change>(const std::optional<QByteArray> &)> &change) override;

private:
    Location jsonFile(const QString &key) const;
    Location valuesFile() const;
    Result<FileLock> lockAgainstOthers() const;
    Result<QJsonObject> readValues() const;
    Result<void> keepAside(const QString &key, const QByteArray &content) const;

    Location m_folder;
    mutable std::mutex m_mutex;
};

} // namespace brellin
