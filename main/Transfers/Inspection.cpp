#include "Transfers/Inspection.h"

#include "Base/German.h"
#include "Disk/FreeName.h"
#include "Disk/MayRemove.h"
#include "Disk/Walk.h"
#include "Transfers/TargetLimits.h"
#include "Transfers/TransferEngine.h"

#include <algorithm>
#include <map>
#include <mutex>

namespace brellin {

namespace {

/// Time limit for measuring renames, all together; zero on network volumes, where counting is slow.
constexpr std::chrono::milliseconds brief{300};

TargetLimits limitsOf(const Location &folder, const Volumes &volumes)
{
    TargetLimits limits = TargetLimits::of(volumes.fileSystem(folder));
    limits.nameBytes = nameLimit(folder);
    return limits;
}

/// Checks the sources that will be copied.
class Inspector {
public:
    Inspector(TargetLimits limits, TransferKind kind, const JobControl &control)
        : m_limits(limits)
        , m_kind(kind)
        , m_control(control)
    {
    }

    void inspect(const TransferStep &step)
    {
        m_source = &step.src;
        const std::size_t before = m_faults;
        m_size = {};
        const Result<FileAttributes> attributes = readAttributes(step.src);
        checkName(shownName(step.src), step.dst.filename().native());
        checkCollision(step.dst.parent_path().native(), step.dst.filename().native(), shownName(step.src));
        if (attributes && attributes->isFolder())
            inspectFolder(step.src);
        else if (attributes)
            add(shownName(step.src), *attributes);
        m_result.sizes.push_back(m_size);
        if (m_faults > before)
            hinder();
    }

    /// Adds a step that is not inspected.
    void take(const TransferSize &size) { m_result.sizes.push_back(size); }

    void checkSpace(const Result<std::int64_t> &available)
    {
        if (!available || m_space <= *available)
            return;
        note(QStringLiteral("Es fehlt Platz: Gebraucht werden %1, frei sind %2.")
                 .arg(sizeText(m_space), sizeText(*available)));
        // In order, the steps that do not fit any more.
        std::int64_t used = 0;
        for (const auto &[step, bytes] : m_spaceOf) {
            if (used + bytes > *available)
                m_result.hindered.insert(step);
            else
                used += bytes;
        }
    }

    Inspection result() { return std::move(m_result); }

private:
    void inspectFolder(const Location &folder)
    {
        WalkOptions options;
        options.attributes = Attribute::Size | Attribute::Identity;
        const std::int64_t before = m_space;
        std::mutex mutex;
        const auto visit = [&](const WalkEntry &entry, int) {
            const bool givesUp = m_kind == TransferKind::Move && entry.attributes.isFolder();
            const Result<void> may = givesUp ? checkMayEmpty(entry.location()) : Result<void>();
            const std::scoped_lock lock(mutex);
            look(entry);
            if (!may)
                noteAtTheSource(relative(entry), may.error());
            return WalkStep::Continue;
        };
        // Unreadable entries are reported when they are copied.
        (void)walkParallel(folder, options, visit, &m_control);
        m_spaceOf.emplace_back(m_result.sizes.size(), m_space - before);
    }

    void look(const WalkEntry &entry)
    {
        if (!m_limits.anythingGoes()) {
            checkName(relative(entry), entry.name);
            checkCollision(std::string(entry.folder), entry.name, relative(entry));
        }
        if (!entry.attributes.isFolder())
            count(entry.attributes, [&] { return relative(entry); });
    }

    void add(const QString &name, const FileAttributes &attributes)
    {
        const std::int64_t before = m_space;
        count(attributes, [&] { return name; });
        m_spaceOf.emplace_back(m_result.sizes.size(), m_space - before);
    }

    template <class Name>
    void count(const FileAttributes &attributes, const Name &name)
    {
        ++m_size.files;
        if (!attributes.isFile())
            return;
        m_size.bytes += attributes.size;
        if (const auto fault = m_limits.sizeFault(attributes.size))
            note(name() + QStringLiteral(": ") + *fault);
        // Count the space of hard links once.
        if (attributes.links == 1 || m_linked.insert(attributes.identity).second)
            m_space += m_limits.keepsHoles ? std::min(attributes.size, attributes.diskSize) : attributes.size;
    }

    void checkName(const QString &shownAs, std::string_view name)
    {
        if (const auto fault = m_limits.nameFault(name))
            note(shownAs + QStringLiteral(": ") + *fault);
    }

    void checkCollision(std::string folder, std::string_view name, const QString &shownAs)
    {
        if (!m_limits.ignoresCase)
            return;
        const QString key = shown(std::string_view(folder.append("/"))) + m_limits.keyOf(shown(name));
        if (!m_names.insert(key).second)
            note(shownAs + QStringLiteral(": Am Ziel gilt dieser Name als gleich mit einem anderen."));
    }

    QString relative(const WalkEntry &entry) const
    {
        return shown(entry.location().lexically_relative(m_source->parent_path()));
    }

    void noteAtTheSource(const QString &shownAs, const Failure &why)
    {
        note(shownAs + QStringLiteral(": ") + why.message);
        ++m_result.atTheSource;
    }

    void note(const QString &line)
    {
        ++m_faults;
        m_result.obstacles << line;
    }
    void hinder() { m_result.hindered.insert(m_result.sizes.size() - 1); }

    const TargetLimits m_limits;
    const TransferKind m_kind;
    const JobControl &m_control;
    Inspection m_result;
    const Location *m_source = nullptr;
    TransferSize m_size;
    std::size_t m_faults = 0;
    std::int64_t m_space = 0;
    std::vector<std::pair<std::size_t, std::int64_t>> m_spaceOf; ///< step index and bytes
    std::set<FileIdentity> m_linked;
    std::set<QString> m_names;
};

/// Steps of a merge may reach other volumes, mounted below the destination.
std::map<Location, std::vector<std::size_t>> stepsByVolume(const std::vector<TransferStep> &steps,
                                                           const Volumes &volumes)
{
    std::map<Location, Location> tops;
    std::map<Location, std::vector<std::size_t>> byVolume;
    for (std::size_t i = 0; i < steps.size(); ++i) {
        const Location folder = steps[i].dst.parent_path();
        auto top = tops.find(folder);
        if (top == tops.end())
            top = tops.emplace(folder, volumes.top(folder).value_or(folder)).first;
        byVolume[top->second].push_back(i);
    }
    return byVolume;
}

std::vector<TransferStep> stepsOf(const std::vector<TransferStep> &steps, const std::vector<std::size_t> &numbers)
{
    std::vector<TransferStep> some;
    some.reserve(numbers.size());
    for (const std::size_t number : numbers)
        some.push_back(steps[number]);
    return some;
}

Result<Inspection> inspectVolume(const std::vector<TransferStep> &steps, TransferKind kind,
                                 const TransferServices &services, const JobControl &control)
{
    const Location folder = steps.front().dst.parent_path();
    Inspector inspector(limitsOf(folder, services.volumes), kind, control);
    const auto deadline = std::chrono::steady_clock::now() + (services.volumes.isLocal(folder) ? brief : brief.zero());
    for (const TransferStep &step : steps) {
        if (kind == TransferKind::Move && services.volumes.same(step.src, folder))
            inspector.take(TransferEngine::measure(step.src, &control, deadline));
        else
            inspector.inspect(step);
        if (control.cancelled())
            return failure(Failure::cancelled());
    }
    inspector.checkSpace(services.volumes.available(folder));
    return inspector.result();
}

} // namespace

void Inspection::include(const Inspection &part, const std::vector<std::size_t> &numbers)
{
    for (std::size_t i = 0; i < numbers.size(); ++i)
        sizes[numbers[i]] = part.sizes[i];
    for (const std::size_t step : part.hindered)
        hindered.insert(numbers[step]);
    obstacles += part.obstacles;
    atTheSource += part.atTheSource;
}

TransferSize Inspection::total() const
{
    TransferSize sum;
    for (const TransferSize &size : sizes)
        sum += size;
    return sum;
}

std::optional<ObstacleQuestion> Inspection::question() const
{
    if (obstacles.isEmpty())
        return std::nullopt;
    return ObstacleQuestion{obstacles.mid(0, static_cast<qsizetype>(ObstacleQuestion::shownAtMost)),
                            static_cast<std::size_t>(obstacles.size()), hinderedNames, hindersFolders,
                            obstacles.size() == atTheSource};
}

Inspection Inspection::withoutHindered(std::vector<TransferStep> &steps) const
{
    Inspection rest;
    std::vector<TransferStep> kept;
    for (std::size_t i = 0; i < steps.size(); ++i) {
        if (hindered.contains(i))
            continue;
        kept.push_back(std::move(steps[i]));
        rest.sizes.push_back(sizes[i]);
    }
    steps = std::move(kept);
    return rest;
}

Result<Inspection> inspectSteps(const std::vector<TransferStep> &steps, TransferKind kind,
                                const TransferServices &services, const JobControl &control)
{
    Inspection found;
    found.sizes.resize(steps.size());
    for (const auto &[volume, numbers] : stepsByVolume(steps, services.volumes))
        found.include(TRY(inspectVolume(stepsOf(steps, numbers), kind, services, control)), numbers);
    for (const std::size_t step : found.hindered) {
        const Location &source = steps[step].src;
        found.hinderedNames << shownName(source);
        found.hindersFolders = found.hindersFolders || readAttributes(source).value_or(FileAttributes()).isFolder();
    }
    return found;
}

} // namespace brellin
