#include "Sidebar/Pins.h"

#include "Sidebar/QuickEntryJson.h"
#include "System/PlainSetting.h"
#include "System/StoredList.h"

#include <QStringList>

#include <algorithm>
#include <iterator>

namespace brellin {

namespace {

std::vector<QuickEntry>::iterator find(std::vector<QuickEntry> &entries, const QUuid &id)
{
    return std::ranges::find(entries, id, &QuickEntry::id);
}

/// The paths stored by an earlier version, as a plain list or as JSON. An empty list is the user's, too.
std::optional<QStringList> olderPaths(const UserDefaults &defaults)
{
    const QString key = QStringLiteral("pinnedFolders");
    if (const StoredList<QString> list = storedList<QString>(defaults, key); list.isKnown())
        return QStringList(list.records.begin(), list.records.end());
    const QStringList paths = plainSetting(defaults, key, QStringList());
    const QVariant value = defaults.value(key).value_or(QVariant());
    const bool isList = value.metaType().id() == QMetaType::QStringList || value == QVariant(QVariantList());
    return isList || !paths.isEmpty() ? std::optional(paths) : std::nullopt;
}

/// Another program may have stored a folder as "/home/anna/Briefe/".
std::vector<QuickEntry> withStandardPaths(std::vector<QuickEntry> entries)
{
    for (QuickEntry &entry : entries) {
        if (entry.path)
            entry.path = standardised(*entry.path);
    }
    return entries;
}

} // namespace

const QString Pins::key = QStringLiteral("quickAccess");

Pins::Pins(UserDefaults &defaults, const KnownFolders &folders) : m_defaults(defaults), m_folders(folders)
{
    const StoredList<QuickEntry> stored = storedList<QuickEntry>(m_defaults, key);
    const std::optional<Entries> older = stored.isKnown() ? std::nullopt : olderEntries();
    if (!older) {
        publish(entries, withStandardPaths(stored.value_or(usualEntries())));
    } else {
        publish(entries, *older);
        // Store the new list, so that the old one is not read again. On failure the next start converts again.
        [[maybe_unused]] const Result<void> taken = change([](Entries &) {});
    }
}

QuickEntry Pins::entryFor(const Location &folder) const
{
    return {QUuid::createUuid(), m_folders.title(folder), folder, QStringLiteral("folder"), {}, {}};
}

std::optional<Pins::Entries> Pins::olderEntries() const
{
    const std::optional<QStringList> paths = olderPaths(m_defaults);
    if (!paths)
        return std::nullopt;
    Entries converted;
    std::ranges::transform(*paths, std::back_inserter(converted),
                           [&](const QString &path) { return entryFor(standardised(locationFromText(path))); });
    return converted;
}

Pins::Entries Pins::usualEntries() const
{
    Entries usual;
    const auto add = [&](const QString &name, const std::optional<Location> &path, const QString &symbol) {
        usual.push_back({QUuid::createUuid(), name, path, symbol, {}, {}});
    };
    if (m_folders.iCloud)
        add(QStringLiteral("iCloud Drive"), m_folders.iCloud, QStringLiteral("icloud"));
    add(QStringLiteral("Eigene Dateien"), m_folders.eigeneDateien.value_or(m_folders.dir(StandardFolder::Documents)),
        QStringLiteral("person.crop.square"));
    add(QStringLiteral("Schreibtisch"), m_folders.dir(StandardFolder::Desktop),
        QStringLiteral("menubar.dock.rectangle"));
    add(QStringLiteral("Downloads"), m_folders.dir(StandardFolder::Downloads), QStringLiteral("arrow.down.circle"));
    if (m_folders.applications)
        add(QStringLiteral("Programme"), m_folders.applications, QStringLiteral("square.grid.3x3"));
    add(QStringLiteral("Fotos-Mediathek"), std::nullopt, QStringLiteral("photo.on.rectangle.angled"));
    return usual;
}

std::vector<Location> Pins::folders() const
{
    std::vector<Location> folders;
    for (const QuickEntry &entry : entries.get()) {
        if (entry.path)
            folders.push_back(*entry.path);
    }
    return folders;
}

bool Pins::holds(const Location &folder) const
{
    return std::ranges::find(entries.get(), std::optional(standardised(folder)), &QuickEntry::path) !=
           entries.get().end();
}

/// If nothing is stored yet, or it cannot be decoded, edits the shown entries instead.
Result<void> Pins::change(const std::function<void(Entries &)> &edit)
{
    Entries changed;
    const Entries shownNow = entries.get();
    TRY(updateList<QuickEntry>(m_defaults, key, [&](std::optional<Entries> stored) -> std::optional<Entries> {
        const bool fresh = !stored;
        changed = stored ? withStandardPaths(*std::move(stored)) : shownNow;
        const Entries before = changed;
        edit(changed);
        return fresh || changed != before ? std::optional(changed) : std::nullopt;
    }));
    publish(entries, changed);
    return {};
}

Result<void> Pins::changeOne(const QUuid &id, const std::function<void(QuickEntry &)> &edit)
{
    return change([&](Entries &list) {
        if (const auto entry = find(list, id); entry != list.end())
            edit(*entry);
    });
}

Result<void> Pins::toggle(const Location &folder)
{
    const Location path = standardised(folder);
    return change([&](Entries &list) {
        if (std::erase_if(list, [&](const QuickEntry &entry) { return entry.path == path; }) == 0)
            list.push_back(entryFor(path));
    });
}

Result<void> Pins::pin(const Location &folder)
{
    const Location path = standardised(folder);
    return change([&](Entries &list) {
        if (std::ranges::find(list, std::optional(path), &QuickEntry::path) == list.end())
            list.push_back(entryFor(path));
    });
}

Result<void> Pins::unpin(const Location &folder)
{
    const Location path = standardised(folder);
    return change(
        [&](Entries &list) { std::erase_if(list, [&](const QuickEntry &entry) { return entry.path == path; }); });
}

Result<void> Pins::remove(const QUuid &id)
{
    return change([&](Entries &list) { std::erase_if(list, [&](const QuickEntry &entry) { return entry.id == id; }); });
}

Result<void> Pins::rename(const QUuid &id, const QString &name)
{
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty())
        return {};
    return changeOne(id, [&](QuickEntry &entry) { entry.name = trimmed; });
}

Result<void> Pins::moveUp(const QUuid &id)
{
    return change([&](Entries &list) {
        if (const auto entry = find(list, id); entry != list.end() && entry != list.begin())
            std::iter_swap(entry, entry - 1);
    });
}

Result<void> Pins::moveDown(const QUuid &id)
{
    return change([&](Entries &list) {
        if (const auto entry = find(list, id); entry != list.end() && entry + 1 != list.end())
            std::iter_swap(entry, entry + 1);
    });
}

Result<void> Pins::moveTo(const QUuid &id, std::size_t index)
{
    return change([&](Entries &list) {
        const auto entry = find(list, id);
        if (entry == list.end())
            return;
        const auto target = list.begin() + static_cast<std::ptrdiff_t>(std::min(index, list.size()));
        if (target <= entry)
            std::rotate(target, entry, entry + 1);
        else
            std::rotate(entry, entry + 1, target);
    });
}

Result<void> Pins::setSymbol(const QUuid &id, const QString &symbol)
{
    return changeOne(id, [&](QuickEntry &entry) { entry.symbol = symbol; });
}

Result<void> Pins::setImage(const QUuid &id, const std::optional<Location> &image)
{
    return changeOne(id, [&](QuickEntry &entry) { entry.imagePath = image; });
}

Result<void> Pins::setColor(const QUuid &id, const std::optional<QString> &color)
{
    return changeOne(id, [&](QuickEntry &entry) { entry.color = color; });
}

void Pins::reload()
{
    publish(entries, withStandardPaths(storedList<QuickEntry>(m_defaults, key).value_or(entries.get())));
}

} // namespace brellin
