#pragma once

#include "System/UserDefaults.h"

#include <QHash>

#include <mutex>

namespace brellin {

/// Settings that are forgotten with the object: over another set of settings (which it reads where it has nothing of its
/// own, and never writes), or over nothing. This is how a command that only proposes runs without storing anything.
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
    QHash<QString, std::optional<QByteArray>> m_json; ///< nothing: the list was given up
};

} // namespace brellin
