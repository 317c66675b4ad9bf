#pragma once

#include "Base/Job.h"
#include "Base/Location.h"
#include "Base/Published.h"
#include "Disk/FileActions.h"
#include "Disk/Trash.h"
#include "Disk/TrashContents.h"
#include "Disk/Volumes.h"
#include "Features/TrashReturn.h"

#include <QPointer>
#include <QString>
#include <QThreadPool>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brellin {

/// One entry of the Trash.
struct TrashItem {
    TrashedEntry entry;
    QString name; ///< the original name
    bool folder = false;
    std::optional<std::int64_t> size; ///< in bytes, for folders including everything below; nullopt until counted

    bool operator==(const TrashItem &) const = default;
};

/// How much a list of trashed entries is.
struct TrashAmount {
    std::size_t count = 0;
    std::int64_t bytes = 0;
    bool wholeSize = true; ///< false if `bytes` lacks a folder that is not counted yet

    bool operator==(const TrashAmount &) const = default;
};
TrashAmount amountOf(const std::vector<TrashItem> &items);
/// „3 Elemente“, the separator, „mindestens 1,2 MB“
QString amountText(const TrashAmount &amount, const QString &separator);

/// The contents of all volumes' Trash folders as one list, latest first. Each volume is read by its own thread; an
/// unresponsive one is missing from the list and does not delay the others. Lives on the main thread; the ports must
/// outlive it.
class TrashList : public Model<TrashList> {
public:
    /// `homeTrash` is the folder with "files" and "info".
    TrashList(Location homeTrash, const Volumes &volumes, Trash &trash, FileActions &files);
    ~TrashList() override;

    Published<std::vector<TrashItem>> items;
    Published<bool> loading{false};
    Published<bool> returning{false};

    /// Re-reads all Trash folders.
    void refresh();
    /// Restores entries ("Zurücklegen"), one request at a time. Calls `finished` once, unless `receiver` or this object
    /// is destroyed.
    void putBack(const std::vector<Location> &places, QObject *receiver,
                 std::function<void(const TrashReturn &)> finished);
    /// Cancels restoring after the current entry.
    void cancel() { m_returning.cancel(); }

private:
    using Items = std::vector<TrashItem>;
    struct Source {
        std::shared_ptr<QThreadPool> pool;
        Job<Items> reading;
        Job<Items> counting; ///< adds the sizes of folders
        Items items;
        bool again = false; ///< a re-read was requested during the read
    };

    void read(const std::string &top);
    void count(Source &source);
    void merge();

    const Location m_homeTrash;
    const Volumes &m_volumes;
    Trash &m_trash;
    FileActions &m_files;
    std::map<std::string, std::unique_ptr<Source>> m_sources; ///< by mount point; the home Trash under ""
    const std::shared_ptr<QThreadPool> m_returnPool;
    Job<TrashReturn> m_returning;
};

} // namespace brellin
