#include "System/MemoryUserDefaults.h"

namespace brellin {

std::optional<QVariant> MemoryUserDefaults::value(const QString &key) const
{
    const std::scoped_lock lock(m_mutex);
    if (const auto own = m_values.constFind(key); own != m_values.constEnd())
        return *own;
    return m_beneath ? m_beneath->value(key) : std::nullopt;
}

Result<void> MemoryUserDefaults::setValue(const QString &key, const QVariant &value)
{
    const std::scoped_lock lock(m_mutex);
    m_values.insert(key, value);
    return {};
}

Result<std::optional<QByteArray>> MemoryUserDefaults::read(const QString &key) const
{
    const std::scoped_lock lock(m_mutex);
    if (const auto own = m_json.constFind(key); own != m_json.constEnd())
        return *own;
    return m_beneath ? m_beneath->read(key) : std::nullopt;
}

/// Data in memory cannot be damaged, so it is its own last good version.
Result<std::optional<QByteArray>> MemoryUserDefaults::readLastGood(const QString &key) const
{
    const std::scoped_lock lock(m_mutex);
    if (const auto own = m_json.constFind(key); own != m_json.constEnd())
        return *own;
    return m_beneath ? m_beneath->readLastGood(key) : std::nullopt;
}

Location MemoryUserDefaults::fileOf(const QString &key) const
{
    return m_beneath ? m_beneath->fileOf(key) : Location(key.toStdString() + ".json");
}

Result<void>
MemoryUserDefaults::update(const QString &key,
                           const std::function<std::optional<Change>(const std::optional<QByteArray> &)> &change)
{
    const std::optional<QByteArray> old = TRY(read(key));
    if (const std::optional<Change> changed = change(old)) {
        const std::scoped_lock lock(m_mutex);
        m_json.insert(key, changed->json);
    }
    return {};
}

Result<void> MemoryUserDefaults::replace(const QString &key, const std::optional<QByteArray> &json)
{
    const std::scoped_lock lock(m_mutex);
    m_json.insert(key, json);
    return {};
}

} // namespace brellin
