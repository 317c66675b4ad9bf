#include "System/FileUserDefaults.h"

#include "System/FileLock.h"

#include <QDateTime>
#include <QSettings>

namespace brellin {

namespace {

QString lastError(const QSettings &settings)
{
    return settings.status() == QSettings::AccessError
               ? QStringLiteral("Die Einstellungen können nicht gespeichert werden.")
               : QStringLiteral("Die Einstellungsdatei ist beschädigt.");
}

} // namespace

FileUserDefaults::FileUserDefaults(Location folder) : m_folder(std::move(folder)) {}

Location FileUserDefaults::jsonFile(const QString &key) const
{
    return m_folder / (key.toStdString() + ".json");
}

QString FileUserDefaults::valuesFile() const
{
    return QString::fromStdString((m_folder / "settings.ini").native());
}

std::optional<QVariant> FileUserDefaults::value(const QString &key) const
{
    const std::scoped_lock lock(m_mutex);
    const QSettings settings(valuesFile(), QSettings::IniFormat);
    if (!settings.contains(key))
        return std::nullopt;
    return settings.value(key);
}

Result<void> FileUserDefaults::setValue(const QString &key, const QVariant &value)
{
    const std::scoped_lock lock(m_mutex);
    TRY(createPrivateFolders(m_folder));
    const FileLock other = TRY(FileLock::wait(m_folder / "settings.lock"));
    QSettings settings(valuesFile(), QSettings::IniFormat);
    if (settings.contains(key) && settings.value(key) == value)
        return {};
    settings.setValue(key, value);
    settings.sync();
    if (settings.status() != QSettings::NoError)
        return failure(lastError(settings));
    return {};
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
    const FileLock other = TRY(FileLock::wait(m_folder / "settings.lock"));
    const Location file = jsonFile(key);
    const Result<QByteArray> old = readWhole(file);
    // A file that is there and cannot be read is not an empty one: overwriting it could lose a history.
    if (!old && !old.error().is(std::errc::no_such_file_or_directory))
        return failure(old.error());
    const std::optional<Change> changed = change(old ? std::optional(*old) : std::nullopt);
    if (!changed || (old && *old == changed->json))
        return {};
    if (old && changed->keepOldAside) {
        const QString time = QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd-HHmmss-zzz"));
        const QString aside = key + QStringLiteral(".beschädigt-") + time + QStringLiteral(".json");
        TRY(writeAtomically(m_folder / aside.toStdString(), *old));
    }
    return writeAtomically(file, changed->json);
}

} // namespace brellin
