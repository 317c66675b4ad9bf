#pragma once

#include "Base/Location.h"
#include "Base/Published.h"
#include "Base/Result.h"
#include "Places/KnownFolders.h"
#include "Sidebar/QuickEntry.h"
#include "System/UserDefaults.h"

#include <QString>
#include <QUuid>

#include <functional>
#include <optional>
#include <vector>

namespace brellin {

/// The quick access: the user's list of folders, shared by all windows. Each change is applied to the stored list under
/// its lock; if it cannot be stored, nothing changes. Settings and folders must outlive it.
class Pins : public Model<Pins> {
public:
    /// The setting that holds the list.
    static const QString key;

    /// Loads the stored list, or converts the one of an earlier version ("pinnedFolders"), or uses the default entries.
    Pins(UserDefaults &defaults, const KnownFolders &folders);

    Published<std::vector<QuickEntry>> entries;

    /// The folders of all entries that have one.
    std::vector<Location> folders() const;
    bool holds(const Location &folder) const;

    /// Appends the folder, or removes it if it is pinned.
    Result<void> toggle(const Location &folder);
    Result<void> pin(const Location &folder);
    Result<void> unpin(const Location &folder);
    Result<void> remove(const QUuid &id);
    /// Changes the shown name, never the folder. Ignores an empty name.
    Result<void> rename(const QUuid &id, const QString &name);
    /// Swaps with the neighbour; does nothing at the ends.
    Result<void> moveUp(const QUuid &id);
    Result<void> moveDown(const QUuid &id);
    /// Moves the entry before the one now at `index`; the length of the list means the end.
    Result<void> moveTo(const QUuid &id, std::size_t index);
    Result<void> setSymbol(const QUuid &id, const QString &symbol);
    Result<void> setImage(const QUuid &id, const std::optional<Location> &image);
    Result<void> setColor(const QUuid &id, const std::optional<QString> &color);

    /// Reads the list again, e.g. after another program changed it.
    void reload();

private:
    using Entries = std::vector<QuickEntry>;

    std::optional<Entries> olderEntries() const;
    Entries usualEntries() const;
    QuickEntry entryFor(const Location &folder) const;
    Result<void> change(const std::function<void(Entries &)> &edit);
    Result<void> changeOne(const QUuid &id, const std::function<void(QuickEntry &)> &edit);

    UserDefaults &m_defaults;
    const KnownFolders &m_folders;
};

} // namespace brellin
