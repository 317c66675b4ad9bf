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

/// The quick access: the user's ordered list of folders, one for all windows. Every change is stored at once, on what is
/// stored then; one that cannot be stored does not happen. Settings and folders outlive it.
class Pins : public Model<Pins> {
public:
    /// The setting that holds the list.
    static const QString key;

    /// Loads what is stored, else what an earlier version stored ("pinnedFolders"), else the usual entries.
    Pins(UserDefaults &defaults, const KnownFolders &folders);

    Published<std::vector<QuickEntry>> entries;

    /// The folders of all entries that have one.
    std::vector<Location> folders() const;
    bool holds(const Location &folder) const;

    /// Pins a folder at the end, or takes it away where it is pinned.
    Result<void> toggle(const Location &folder);
    Result<void> pin(const Location &folder);
    Result<void> unpin(const Location &folder);
    Result<void> remove(const QUuid &id);
    /// Changes the shown name only, never the folder. An empty name is ignored.
    Result<void> rename(const QUuid &id, const QString &name);
    /// Swaps with the neighbour; nothing at the ends.
    Result<void> moveUp(const QUuid &id);
    Result<void> moveDown(const QUuid &id);
    /// Puts the entry in front of the one that is at `index` now (the length of the list: at the end).
    Result<void> moveTo(const QUuid &id, std::size_t index);
    Result<void> setSymbol(const QUuid &id, const QString &symbol);
    Result<void> setImage(const QUuid &id, const std::optional<Location> &image);
    Result<void> setColor(const QUuid &id, const std::optional<QString> &color);

    /// Reads the list again: another program may have changed it.
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
