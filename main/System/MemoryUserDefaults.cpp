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

std::optional<QByteArray> MemoryUserDefaults::json(const QString &key) const
{
    const std::scoped_lock lock(m_mutex);
    if (const auto own = m_json.constFind(key); own != m_json.constEnd())
        return *own;
    return m_beneath ? m_beneath->json(key) : std::nullopt;
}

Result<void>
MemoryUserDefaults::update(const QString &key,
                           const std::function<std::optional<Change>(const std::optional<QByteArray> &)> &change)
{
    if (const std::optional<Change> changed = change(json(key))) {
        const std::scoped_lock lock(m_mutex);
        m_json.insert(key, changed->json);
    }
    return {};
}

} // namespace brellin
