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

/// The room on a volume.
struct VolumeSpace {
    std::int64_t capacity = 0;
    std::int64_t free = 0; ///< what this user may still write
    bool operator==(const VolumeSpace &) const = default;
};

/// One volume as the sidebar shows it.
struct VolumeEntry {
    Location root;
    QString name;
    bool local = true;
    bool ejectable = false;
    bool answering = true; ///< false: a server that does not tell its space in time
    std::optional<VolumeSpace> space;

    bool operator==(const VolumeEntry &) const = default;
};

/// The space of the volume at a place, asked from the system. May hang: called on workers only.
Result<VolumeSpace> volumeSpace(const Location &root);

/// The mounted volumes, kept up to date while it lives. Nothing on a volume is touched on the main thread; a server that does
/// not answer is shown so. Lives on the main thread; its ports outlive it.
class VolumeList : public Model<VolumeList> {
public:
    using AskSpace = std::function<Result<VolumeSpace>(const Location &)>;

    VolumeList(MountSource &mounts, DiskService &disks, AskSpace askSpace = volumeSpace);
    ~VolumeList() override;

    Published<std::vector<VolumeEntry>> volumes;
    Published<bool> ejecting{false};
    Published<std::optional<QString>> errorMessage; ///< why something was not ejected whose receiver has gone

    /// Shows what is mounted and follows changes.
    void start();
    /// Asks for space and labels again (also done every minute).
    void refresh();
    /// Unmounts a volume and ejects its medium. `finished` is called once, unless `receiver` or this object has gone.
    void eject(const Location &root, QObject *receiver, std::function<void(const Result<void> &)> finished);
    void dismissError() { publish(errorMessage, std::optional<QString>()); }

private:
    using Facts = std::map<std::string, DiskFacts>;
    struct Asked {
        std::shared_ptr<QThreadPool> pool;
        Job<Result<VolumeSpace>> job;
        QTimer late; ///< the volume has not answered in time
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
    std::map<std::string, std::unique_ptr<Asked>> m_asked; ///< by root
    Facts m_facts;
    bool m_factsOutdated = false;
    std::shared_ptr<QThreadPool> m_diskPool;
    Job<Result<Facts>> m_askingFacts;
    Job<Result<void>> m_ejecting;
    QTimer m_settle; ///< mounting changes the table several times
    QTimer m_regularly;
};

} // namespace brellin
