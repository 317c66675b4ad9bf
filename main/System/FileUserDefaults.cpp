#include "System/FileUserDefaults.h"

#include <QDateTime>
#include <QJsonDocument>

namespace brellin {

namespace {

/// A date within the values: JSON has no form of its own for it.
const QString dateKey = QStringLiteral("datum");

QJsonValue jsonOf(const QVariant &value)
{
    if (value.metaType().id() == QMetaType::QDateTime)
        return QJsonObject{{dateKey, value.toDateTime().toUTC().toString(Qt::ISODateWithMs)}};
    return QJsonValue::fromVariant(value);
}

QVariant variantOf(const QJsonValue &json)
{
    if (json.isObject() && json.toObject().contains(dateKey))
        return QDateTime::fromString(json.toObject().value(dateKey).toString(), Qt::ISODateWithMs);
    return json.toVariant();
}

} // namespace

FileUserDefaults::FileUserDefaults(Location folder) : m_folder(std::move(folder)) {}

Location FileUserDefaults::jsonFile(const QString &key) const
{
    return m_folder / (key.toStdString() + ".json");
}

Location FileUserDefaults::valuesFile() const
{
    return m_folder / "settings.json";
}

/// Another program holds it for as long as it writes a file.
Result<FileLock> FileUserDefaults::lockAgainstOthers() const
{
    constexpr std::chrono::seconds patience{5};
    Result<FileLock> lock = FileLock::wait(m_folder / "settings.lock", patience);
    if (!lock && lock.error().is(std::errc::resource_unavailable_try_again))
        return failure(
            Failure{QStringLiteral("Die Einstellungen sind gesperrt: Ein anderes Programmfenster antwortet nicht."),
                    lock.error().code});
    return lock;
}

Result<QJsonObject> FileUserDefaults::readValues() const
{
    const Result<QByteArray> content = readWhole(valuesFile());
    if (!content && content.error().is(std::errc::no_such_file_or_directory))
        return QJsonObject();
    if (!content)
        return failure(content.error());
    const QJsonDocument document = QJsonDocument::fromJson(*content);
    if (!document.isObject())
        return failure(QStringLiteral("Die Einstellungsdatei ist beschädigt."));
    return document.object();
}

std::optional<QVariant> FileUserDefaults::value(const QString &key) const
{
    const Result<QJsonObject> values = readValues();
    if (!values || !values->contains(key))
        return std::nullopt;
    return variantOf(values->value(key));
}

Result<void> FileUserDefaults::setValue(const QString &key, const QVariant &value)
{
    const std::scoped_lock lock(m_mutex);
    TRY(createPrivateFolders(m_folder));
    const FileLock other = TRY(lockAgainstOthers());
    Result<QJsonObject> values = readValues();
    if (!values && values.error().code)
        return failure(values.error()); // there, and not readable: overwriting it would lose every setting
    if (!values) {
        const QByteArray damaged = TRY(readWhole(valuesFile()));
        TRY(keepAside(QStringLiteral("settings"), damaged));
        values = QJsonObject();
    }
    const QJsonValue json = jsonOf(value);
    if (values->contains(key) && values->value(key) == json)
        return {};
    values->insert(key, json);
    return writeAtomically(valuesFile(), QJsonDocument(*values).toJson());
}

Result<void> FileUserDefaults::keepAside(const QString &key, const QByteArray &content) const
{
    const QString time = QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd-HHmmss-zzz"));
    const QString name = key + QStringLiteral(".beschädigt-") + time + QStringLiteral(".json");
    return writeAtomically(m_folder / name.toStdString(), content);
}

std::optional<QByteArray> FileUserDefaults::json(const QString &key) const
{
    Result<QByteArray> content = readWhole(jsonFile(key));
    if (!content)
        return std::nullopt;
    return *std::move(content);
}

Result<void>
FileUserDefaults::update(const QString &key,
                         const std::function<std::optional<Change>(const std::optional<QByteArray> &)> &change)
{
    const std::scoped_lock lock(m_mutex);
    TRY(createPrivateFolders(m_folder));
    const FileLock other = TRY(lockAgainstOthers());
    const Location file = jsonFile(key);
    const Result<QByteArray> old = readWhole(file);
    // A file that is there and cannot be read is not an empty one: overwriting it could lose a history.
    if (!old && !old.error().is(std::errc::no_such_file_or_directory))
        return failure(old.error());
    const std::optional<Change> changed = change(old ? std::optional(*old) : std::nullopt);
    if (!changed || (old && *old == changed->json))
        return {};
    if (old && changed->keepOldAside)
        TRY(keepAside(key, *old));
    return writeAtomically(file, changed->json);
}

} // namespace brellin
