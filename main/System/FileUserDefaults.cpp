#include "System/FileUserDefaults.h"

#include "System/AtomicWrite.h"
#include "System/LogReading.h"
#include "System/PrivateFolders.h"
#include "System/ReadWhole.h"

#include <QDateTime>
#include <QJsonDocument>

#include <algorithm>
#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

namespace brellin {

namespace {

/// Whether a further change would get another time. Times are those of the last clock tick; some volumes store whole
/// seconds only.
bool isSettled(const struct stat &status)
{
    constexpr std::chrono::milliseconds coarseTick{50};
    constexpr std::chrono::seconds coarseVolume{3};
    constexpr long usualResolution = 10'000'000;
    const bool fine = status.st_ctim.tv_nsec % usualResolution != 0;
    const auto age = std::chrono::system_clock::now() - instantFrom(status.st_ctim);
    return age > (fine ? std::chrono::nanoseconds(coarseTick) : std::chrono::nanoseconds(coarseVolume));
}

/// Marks a date among the values, since JSON has no type for it.
const QString dateKey = QStringLiteral("datum");
/// The plain values are stored as one object, like a list.
const QString valuesKey = QStringLiteral("settings");

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

std::optional<QJsonObject> valuesIn(const std::optional<QByteArray> &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json.value_or(QByteArray()));
    return document.isObject() ? std::optional(document.object()) : std::nullopt;
}

Failure unreadable(const Location &file, const Failure &why)
{
    return {QStringLiteral("„%1“ ist nicht lesbar: %2").arg(shownName(file), why.message), why.code};
}

Failure leadsNowhere(const Location &link)
{
    return {QStringLiteral("Die Verknüpfung „%1“ führt ins Leere.").arg(shownName(link)), {}};
}

/// The link because of which a file cannot be found, such as one into a volume that is not mounted.
std::optional<Location> danglingLink(std::string place)
{
    const auto isMissing = [] { return errno == ENOENT || errno == ENOTDIR; };
    struct stat found{};
    while (::lstat(place.c_str(), &found) != 0) {
        const std::size_t slash = place.rfind('/');
        if (!isMissing() || slash == std::string::npos || place == "/")
            return std::nullopt;
        place.resize(std::max<std::size_t>(slash, 1));
    }
    const bool dangles = S_ISLNK(found.st_mode) && ::stat(place.c_str(), &found) != 0 && isMissing();
    return dangles ? std::optional(Location(place)) : std::nullopt;
}

using PutAside = std::vector<std::pair<Location, Location>>;

/// Keeps a file under a second name: as a hard link, or as a copy if the volume has none. An unreadable file is renamed
/// instead and added to `gone`.
Result<void> keepAs(const Location &file, const Location &other, qint64 most, PutAside &gone)
{
    std::error_code unresolved;
    const Location target = std::filesystem::canonical(file, unresolved); // settings may be a symlink
    if (!unresolved && ::link(target.c_str(), other.c_str()) == 0)
        return {};
    if (!unresolved && errno == EEXIST)
        return failure(Failure::lastSystem());
    if (const Result<QByteArray> content = readWhole(file, most))
        return writeAtomically(other, *content);
    if (::rename(file.c_str(), other.c_str()) == 0) {
        gone.emplace_back(file, other);
        return {};
    }
    return errno == ENOENT ? Result<void>() : failure(Failure::lastSystem());
}

/// Undoes the renames, unless the original names are taken again.
void putBack(const PutAside &gone)
{
    for (const auto &[file, other] : gone) {
        if (::access(file.c_str(), F_OK) != 0)
            (void)::rename(other.c_str(), file.c_str());
    }
}

} // namespace

FileUserDefaults::FileUserDefaults(Location folder, StoredLimits limits, QJsonObject fresh)
    : m_folder(std::move(folder))
    , m_limits(std::move(limits))
    , m_fresh(std::move(fresh))
{
    m_gate.file = m_folder / "settings.lock";
    for (const QString &key : m_limits.longLists)
        m_longGates[key].file = m_folder / (key.toStdString() + ".lock");
}

FileUserDefaults::Gate &FileUserDefaults::gateOf(const QString &key)
{
    const auto own = m_longGates.find(key);
    return own == m_longGates.end() ? m_gate : own->second;
}

Location FileUserDefaults::fileOf(const QString &key) const
{
    return m_folder / (key.toStdString() + ".json");
}

Location FileUserDefaults::lastGoodFile(const QString &key) const
{
    return m_folder / (key.toStdString() + ".zuletzt-gut.json");
}

qint64 FileUserDefaults::limitOf(const QString &key) const
{
    return m_limits.longLists.contains(key) ? m_limits.longList : m_limits.usual;
}

/// Waits for other processes, which hold the lock only while they write a file.
Result<FileLock> FileUserDefaults::lockAgainstOthers(const Gate &gate)
{
    constexpr std::chrono::seconds patience{5};
    Result<FileLock> lock = FileLock::wait(gate.file, patience);
    if (!lock && lock.error().is(std::errc::resource_unavailable_try_again))
        return failure(
            Failure{QStringLiteral("Die Einstellungen sind gesperrt: Ein anderes Programmfenster antwortet nicht."),
                    lock.error().code});
    return lock;
}

Result<std::optional<QByteArray>> FileUserDefaults::readFile(const Location &file, qint64 most) const
{
    Result<QByteArray> content = readWhole(file, most);
    if (content)
        return std::optional(*std::move(content));
    if (content.error().is(std::errc::no_such_file_or_directory)) {
        const std::optional<Location> link = danglingLink(file.native());
        return link ? failure(leadsNowhere(*link)) : Result<std::optional<QByteArray>>(std::nullopt);
    }
    if (content.error().is(std::errc::file_too_large))
        return failure(tooLarge(most));
    return failure(content.error());
}

/// A missing file whose last good version exists was not removed by the user: it reads as an empty text, which is no
/// valid list.
Result<std::optional<QByteArray>> FileUserDefaults::read(const QString &key) const
{
    std::optional<QByteArray> text = TRY(readFile(fileOf(key), limitOf(key)));
    if (text || ::access(lastGoodFile(key).c_str(), F_OK) != 0)
        return text;
    // Read again: another process may have created both files just now.
    text = TRY(readFile(fileOf(key), limitOf(key)));
    return text ? text : std::optional(QByteArray(""));
}

/// Of a missing file that of the folder, where the file would have to be created.
std::optional<StoredVersion> FileUserDefaults::version(const QString &key) const
{
    const std::string file = m_folder.native() + '/' + key.toStdString() + ".json";
    struct stat status{};
    const bool known =
        ::stat(file.c_str(), &status) == 0 || (errno == ENOENT && ::stat(m_folder.c_str(), &status) == 0);
    if (!known || !isSettled(status))
        return std::nullopt;
    return StoredVersion{status.st_dev, status.st_ino, status.st_size, instantFrom(status.st_mtim),
                         instantFrom(status.st_ctim)};
}

Result<std::optional<QByteArray>> FileUserDefaults::readLastGood(const QString &key) const
{
    return readFile(lastGoodFile(key), limitOf(key));
}

std::optional<QVariant> FileUserDefaults::value(const QString &key) const
{
    const std::optional<QJsonObject> values = valuesIn(read(valuesKey).value_or(std::nullopt));
    if (!values || !values->contains(key))
        return std::nullopt;
    return variantOf(values->value(key));
}

Result<void> FileUserDefaults::setValue(const QString &key, const QVariant &value)
{
    return update(valuesKey, [&](const std::optional<QByteArray> &old) -> std::optional<Change> {
        const std::optional<QJsonObject> stored = valuesIn(old);
        const bool damaged = old && !stored;
        // Fall back to the last good version rather than lose all settings.
        const std::optional<QJsonObject> earlier =
            damaged ? valuesIn(readLastGood(valuesKey).value_or(std::nullopt)) : stored;
        QJsonObject values = earlier.value_or(damaged ? m_fresh : QJsonObject());
        const QJsonValue json = jsonOf(value);
        if (!damaged && values.contains(key) && values.value(key) == json)
            return std::nullopt;
        values.insert(key, json);
        return Change{QJsonDocument(values).toJson(), damaged};
    });
}

Result<void>
FileUserDefaults::update(const QString &key,
                         const std::function<std::optional<Change>(const std::optional<QByteArray> &)> &change)
{
    Gate &gate = gateOf(key);
    const std::scoped_lock lock(gate.mutex);
    TRY(createPrivateFolders(m_folder));
    const FileLock other = TRY(lockAgainstOthers(gate));
    const Result<std::optional<QByteArray>> old = read(key);
    // Unreadable is not empty: overwriting the file could lose a history.
    if (!old)
        return failure(unreadable(fileOf(key), old.error()));
    const std::optional<Change> changed = change(*old);
    if (!changed)
        return {};
    if (*old == changed->json)
        return ::access(lastGoodFile(key).c_str(), F_OK) == 0 ? Result<void>()
                                                              : writeUnflushed(lastGoodFile(key), changed->json);
    if (*old && changed->keepOldAside)
        return inPlaceOfOld(key, [&] { return write(key, changed->json); });
    return write(key, changed->json);
}

Result<void> FileUserDefaults::replace(const QString &key, const std::optional<QByteArray> &json)
{
    Gate &gate = gateOf(key);
    const std::scoped_lock lock(gate.mutex);
    TRY(createPrivateFolders(m_folder));
    const FileLock other = TRY(lockAgainstOthers(gate));
    return inPlaceOfOld(key, [&] { return json ? write(key, *json) : removeBoth(key); });
}

Result<void> FileUserDefaults::removeBoth(const QString &key)
{
    for (const Location &file : {lastGoodFile(key), fileOf(key)}) {
        if (::unlink(file.c_str()) != 0 && errno != ENOENT)
            return failure(Failure::lastSystem());
    }
    return {};
}

/// Writes the last good version first, so that it is never older than the stored one and a full disk changes neither.
/// It is not flushed: after a power failure the stored file is intact, and the next change writes the copy again. A new
/// key is written in the opposite order, since a last good version alone means that the file was lost.
Result<void> FileUserDefaults::write(const QString &key, const QByteArray &json)
{
    if (json.size() > limitOf(key))
        return failure(tooLarge(limitOf(key)));
    const bool first = ::access(fileOf(key).c_str(), F_OK) != 0;
    if (!first)
        TRY(writeUnflushed(lastGoodFile(key), json));
    TRY(writeAtomically(fileOf(key), json));
    if (first)
        (void)writeUnflushed(lastGoodFile(key), json); // not critical: the file itself is stored
    return {};
}

/// Gives the stored file and its last good version second names and then lets `act` replace them. On failure both keep
/// their original names.
Result<void> FileUserDefaults::inPlaceOfOld(const QString &key, const std::function<Result<void>()> &act) const
{
    QDateTime time = QDateTime::currentDateTimeUtc();
    const auto name = [&](const QString &what) {
        const QString when = time.toString(QStringLiteral("yyyyMMdd-HHmmss-zzz"));
        return m_folder / (key + u'.' + what + u'-' + when + QStringLiteral(".json")).toStdString();
    };
    // Two changes within one millisecond.
    while (::access(name(QStringLiteral("beschädigt")).c_str(), F_OK) == 0 ||
           ::access(name(QStringLiteral("zuletzt-gut")).c_str(), F_OK) == 0)
        time = time.addMSecs(1);
    PutAside gone;
    Result<void> done = keepAs(fileOf(key), name(QStringLiteral("beschädigt")), limitOf(key), gone);
    if (done)
        done = keepAs(lastGoodFile(key), name(QStringLiteral("zuletzt-gut")), limitOf(key), gone);
    if (done)
        done = act();
    if (!done)
        putBack(gone);
    return done;
}

} // namespace brellin
