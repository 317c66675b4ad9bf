#include "Places/VolumeList.h"

#include "Base/AbandonablePool.h"

#include <algorithm>
#include <utility>

#include <sys/statvfs.h>

namespace brellin {

using namespace std::chrono_literals;

Result<VolumeSpace> volumeSpace(const Location &root)
{
    struct statvfs status{};
    if (::statvfs(root.c_str(), &status) != 0)
        return failure(Failure::lastSystem());
    // Many network volumes do not report sizes: not to be mistaken for full.
    if (status.f_blocks == 0)
        return failure(Failure::system(ENOTSUP));
    const auto block = static_cast<std::int64_t>(status.f_frsize);
    return VolumeSpace{static_cast<std::int64_t>(status.f_blocks) * block,
                       static_cast<std::int64_t>(status.f_bavail) * block};
}

VolumeList::VolumeList(MountSource &mounts, DiskService &disks, AskSpace askSpace)
    : m_mounts(mounts)
    , m_disks(disks)
    , m_askSpace(std::move(askSpace))
    , m_diskPool(abandonablePool(2s))
{
    m_settle.setSingleShot(true);
    connect(&m_settle, &QTimer::timeout, this, [this] { readTable(); });
    connect(&m_regularly, &QTimer::timeout, this, [this] { refresh(); });
}

VolumeList::~VolumeList() = default;

void VolumeList::start()
{
    m_watch = m_mounts.watch([this] { m_settle.start(100ms); });
    readTable();
    // Without change notification also poll the table.
    m_regularly.start(m_watch ? 60s : 10s);
}

void VolumeList::refresh()
{
    if (!m_watch)
        readTable();
    for (const auto &[root, asked] : m_asked)
        askSpace(root);
    askFacts();
}

void VolumeList::readTable()
{
    const std::vector<Mount> table = m_mounts.table();
    std::vector<Mounted> now;
    for (Volume &volume : volumesIn(table)) {
        const Mount *const mount = mountHolding(table, volume.root.native());
        now.push_back({std::move(volume), mount ? mount->source : std::string()});
    }
    if (now == m_mounted)
        return;
    // Discard answers of volumes that have changed.
    std::erase_if(m_asked, [&](const auto &asked) {
        const auto isHere = [&](const Mounted &one) { return one.volume.root.native() == asked.first; };
        const auto before = std::ranges::find_if(m_mounted, isHere);
        const auto after = std::ranges::find_if(now, isHere);
        return after == now.end() || before == m_mounted.end() || *before != *after;
    });
    m_mounted = std::move(now);
    for (const Mounted &one : m_mounted) {
        if (!m_asked.contains(one.volume.root.native()))
            askSpace(one.volume.root.native());
    }
    askFacts();
    rebuild();
}

/// Uses a thread per volume, since an unresponsive server may block it forever.
void VolumeList::askSpace(const std::string &root)
{
    std::unique_ptr<Asked> &slot = m_asked[root];
    if (!slot) {
        slot = std::make_unique<Asked>();
        slot->pool = abandonablePool();
        slot->late.setSingleShot(true);
        connect(&slot->late, &QTimer::timeout, this, [this, asked = slot.get()] {
            asked->answering = false;
            rebuild();
        });
    }
    Asked *const asked = slot.get();
    if (asked->job.running())
        return;
    asked->late.start(3s);
    asked->job.start(
        *asked->pool, [ask = m_askSpace, place = Location(root)](JobControl &) { return ask(place); },
        [this, asked](const Result<VolumeSpace> &space) {
            asked->late.stop();
            asked->answering = true;
            asked->space = space ? std::optional(*space) : std::nullopt;
            rebuild();
        });
}

void VolumeList::askFacts()
{
    m_factsOutdated = m_askingFacts.running();
    if (m_factsOutdated)
        return;
    m_askingFacts.start(
        *m_diskPool, [disks = &m_disks](JobControl &) { return disks->facts(); },
        [this](const Result<Facts> &facts) {
            // Without the service nothing can be ejected, and volumes are named after their folders.
            m_facts = facts.value_or(Facts());
            rebuild();
            if (m_factsOutdated)
                askFacts();
        });
}

void VolumeList::rebuild()
{
    std::vector<VolumeEntry> entries;
    for (const Mounted &one : m_mounted) {
        const Volume &volume = one.volume;
        VolumeEntry entry{volume.root, volume.name, volume.local, false, true, std::nullopt};
        if (const auto facts = m_facts.find(one.device); facts != m_facts.end()) {
            if (!facts->second.label.isEmpty())
                entry.name = facts->second.label;
            entry.ejectable = volume.root != "/" && (facts->second.removable || facts->second.ejectable);
        }
        if (const auto asked = m_asked.find(volume.root.native()); asked != m_asked.end()) {
            entry.answering = asked->second->answering;
            entry.space = asked->second->space;
        }
        entries.push_back(std::move(entry));
    }
    publish(volumes, std::move(entries));
}

void VolumeList::eject(const Location &root, QObject *receiver, std::function<void(const Result<void> &)> finished)
{
    const auto mounted =
        std::ranges::find(m_mounted, root, [](const Mounted &one) -> const Location & { return one.volume.root; });
    if (mounted == m_mounted.end() || m_ejecting.running()) {
        finished(failure(mounted == m_mounted.end()
                             ? QStringLiteral("Dieser Datenträger ist nicht mehr da.")
                             : QStringLiteral("Es wird gerade schon ein Datenträger ausgeworfen.")));
        return;
    }
    publish(ejecting, true);
    m_ejecting.start(
        *m_diskPool, [disks = &m_disks, device = mounted->device](JobControl &) { return disks->eject(device); },
        [this, name = mounted->volume.name, receiver = QPointer(receiver),
         finished = std::move(finished)](const Result<void> &done) {
            publish(ejecting, false);
            if (receiver)
                finished(done);
            else if (!done)
                publish(
                    errorMessage,
                    std::optional(QStringLiteral("„%1“ wurde nicht ausgeworfen: %2").arg(name, done.error().message)));
        });
}

} // namespace brellin
