#pragma once

#include "Base/Job.h"
#include "Base/Location.h"
#include "Base/Published.h"
#include "Base/Result.h"
#include "Places/DiskService.h"
#include "Places/MountSource.h"

#include <QPointer>
#include <QString>
#include <QThreadPool>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brellin {

/// The space on a volume.
struct VolumeSpace {
    std::int64_t capacity = 0;
    std::int64_t free = 0; ///< available to this user
    bool operator==(const VolumeSpace &) const = default;
};

/// A volume in the sidebar.
struct VolumeEntry {
    Location root;
    QString name;
    bool local = true;
    bool ejectable = false;
    bool answering = true; ///< false: a server that did not answer in time
    std::optional<VolumeSpace> space;

    bool operator==(const VolumeEntry &) const = default;
};

/// Queries the space of the volume at a path. May block for long: call on workers only.
Result<VolumeSpace> volumeSpace(const Location &root);

/// The mounted volumes, updated on changes. Never touches a volume on the main thread; marks servers that do not
/// respond. Lives on the main thread; the ports must outlive it.
class VolumeList : public Model<VolumeList> {
public:
    using AskSpace = std::function<Result<VolumeSpace>(const Location &)>;

    VolumeList(MountSource &mounts, DiskService &disks, AskSpace askSpace = volumeSpace);
    ~VolumeList() override;

    Published<std::vector<VolumeEntry>> volumes;
    Published<bool> ejecting{false};
    Published<std::optional<QString>> errorMessage; ///< why ejecting failed, if its receiver has been destroyed

    /// Reads the mount table and observes its changes.
    void start();
    /// Queries space and labels again; also done every minute.
    void refresh();
    /// Unmounts a volume and ejects its medium. Calls `finished` once, unless `receiver` or this object is destroyed.
    void eject(const Location &root, QObject *receiver, std::function<void(const Result<void> &)> finished);
    void dismissError() { publish(errorMessage, std::optional<QString>()); }

private:
    using Facts = std::map<std::string, DiskFacts>;
    struct Asked {
        std::shared_ptr<QThreadPool> pool;
        Job<Result<VolumeSpace>> job;
        QTimer late; ///< fires if the volume does not answer in time
        std::optional<VolumeSpace> space;
        bool answering = true;
    };
    struct Mounted {
        Volume volume;
        std::string device;
        bool operator==(const Mounted &) const = default;
    };

    void readTable();
    void askSpace(const std::string &root);
    void askFacts();
    void rebuild();

    MountSource &m_mounts;
    DiskService &m_disks;
    const AskSpace m_askSpace;
    std::unique_ptr<QObject> m_watch;
    std::vector<Mounted> m_mounted;
    std::map<std::string, std::unique_ptr<Asked>> m_asked; ///< by mount point
    Facts m_facts;
    bool m_factsOutdated = false;
    std::shared_ptr<QThreadPool> m_diskPool;
    Job<Result<Facts>> m_askingFacts;
    Job<Result<void>> m_ejecting;
    QTimer m_settle; ///< coalesces the several table changes of one mount
    QTimer m_regularly;
};

} // namespace brellin
