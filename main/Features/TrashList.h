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

/// One line of the Trash.
struct TrashItem {
    TrashedEntry entry;
    QString name; ///< as it was called before
    bool folder = false;
    std::optional<std::int64_t> size; ///< bytes, with everything in it; none before it is counted

    bool operator==(const TrashItem &) const = default;
};

/// The Trash of every volume as one list, what went last first. Each volume is read by a thread of its own; one that does not
/// answer is missing from the list and holds up no other. Lives on the main thread; the ports outlive it.
class TrashList : public Model<TrashList> {
public:
    /// `homeTrash` is the folder that holds "files" and "info".
    TrashList(Location homeTrash, const Volumes &volumes, Trash &trash, FileActions &files);
    ~TrashList() override;

    Published<std::vector<TrashItem>> items;
    Published<bool> loading{false};
    Published<bool> returning{false};

    /// Reads every Trash again.
    void refresh();
    /// Puts entries back ("Zurücklegen"), one order at a time. `finished` is called once, unless `receiver` or this object has
    /// gone.
    void putBack(const std::vector<Location> &places, QObject *receiver,
                 std::function<void(const TrashReturn &)> finished);
    /// Ends putting back after the entry at hand.
    void cancel() { m_returning.cancel(); }

private:
    using Items = std::vector<TrashItem>;
    struct Source {
        std::shared_ptr<QThreadPool> pool;
        Job<Items> reading;
        Job<Items> counting; ///< the same with the sizes of folders
        Items items;
        bool again = false; ///< to be read anew: asked for while it was read
    };

    void read(const std::string &top);
    void count(Source &source);
    void merge();

    const Location m_homeTrash;
    const Volumes &m_volumes;
    Trash &m_trash;
    FileActions &m_files;
    std::map<std::string, std::unique_ptr<Source>> m_sources; ///< by the volume's top; the home Trash under ""
    const std::shared_ptr<QThreadPool> m_returnPool;
    Job<TrashReturn> m_returning;
};

} // namespace brellin
