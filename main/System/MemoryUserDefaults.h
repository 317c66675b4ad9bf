#pragma once

#include "System/UserDefaults.h"

#include <QHash>

#include <mutex>

namespace brellin {

/// In-memory settings, optionally as an overlay over other settings, which are read but never written. Used for
/// commands that only propose and must not store anything.
class MemoryUserDefaults : public UserDefaults {
public:
    explicit MemoryUserDefaults(const UserDefaults *beneath = nullptr) : m_beneath(beneath) {}

    std::optional<QVariant> value(const QString &key) const override;
    Result<void> setValue(const QString &key, const QVariant &value) override;
    Result<std::optional<QByteArray>> read(const QString &key) const override;
    Result<std::optional<QByteArray>> readLastGood(const QString &key) const override;
    Location fileOf(const QString &key) const override;
    Result<void> update(const QString &key,
                        const std::function<std::optional<Change>(const std::optional<QByteArray> &)> &change) override;
    Result<void> replace(const QString &key, const std::optional<QByteArray> &json) override;

private:
    const UserDefaults *m_beneath;
    mutable std::mutex m_mutex;
    QHash<QString, QVariant> m_values;
    QHash<QString, std::optional<QByteArray>> m_json; ///< nullopt: the list was removed
};

} // namespace brellin
