#include "Runs/MoveSeries.h"

#include "Guard/RealPath.h"
#include "Runs/StepPerformer.h"

#include <string_view>

namespace brellin {

using Kind = AgentProposal::Kind;

namespace {

/// All file systems accept names of this length.
constexpr std::size_t longestName = 120;

std::string_view folderOf(const Location &standardised)
{
    const std::string_view path = standardised.native();
    return path.substr(0, path.rfind('/'));
}

std::string nameOf(const Location &standardised)
{
    const std::string &path = standardised.native();
    return path.substr(path.rfind('/') + 1);
}

/// Whether the entry's own state is all that needs checking before it is moved.
bool isPlainMove(const AgentProposal &proposal)
{
    const bool moves = proposal.kind == Kind::Move || proposal.kind == Kind::Rename;
    return moves && proposal.destination && proposal.seen && !proposal.keptCopy && !proposal.treeSeen &&
           isStandardised(proposal.source.native()) && isStandardised(proposal.destination->native());
}

} // namespace

bool MoveSeries::Folder::isInPlace() const
{
    return isOpenAt(held.number(), place.real);
}

/// nullopt also if the agent may not work in the folder.
std::optional<MoveSeries::Folder> MoveSeries::hold(const Location &folder) const
{
    Result<HeldFolder> held = HeldFolder::open(folder);
    std::optional<std::string> real = held ? realPathOf(held->number()) : std::nullopt;
    if (!real)
        return std::nullopt;
    SystemLocations::Examined place = m_services.locations.examined(*std::move(real));
    // What was examined by its path must be what is held, not something mounted over it.
    const Result<FileAttributes> opened = attributesOf(held->entry("."));
    const bool same = opened && identityOf(place.real) == opened->identity;
    return place.allowed && same ? std::optional(Folder{*std::move(held), std::move(place)}) : std::nullopt;
}

/// Whether this move has the same folders as the previous one. Opens them at the second entry of a series.
bool MoveSeries::begin(const Location &source, const Location &wanted)
{
    const std::string_view from = folderOf(source);
    const std::string_view to = folderOf(wanted);
    if (from.empty() || to.empty() || from != m_source || to != m_target) {
        m_source = from;
        m_target = to;
        m_from.reset();
        m_to.reset();
        return false;
    }
    if (m_from && m_to)
        return true;
    m_from = hold(m_source);
    m_to = hold(m_target);
    const bool held = m_from && m_to && m_services.volumes.same(source, m_target);
    if (!held)
        m_from.reset();
    return held;
}

bool MoveSeries::isAllowed(const AgentProposal &proposal) const
{
    return m_from->isInPlace() && m_to->isInPlace() &&
           m_guard.checkIn(m_from->place, proposal.source, reviewOf(proposal)) &&
           m_services.locations.isAllowedFileIn(m_to->place, *proposal.destination);
}

std::optional<MoveSeries::Moved> MoveSeries::move(const AgentProposal &proposal)
{
    if (!isPlainMove(proposal) || !begin(proposal.source, *proposal.destination))
        return std::nullopt;
    const std::string newName = nameOf(*proposal.destination);
    // Where the source's path is the one at which its folder lies, one look into the folder is enough.
    const bool ready = newName.size() <= longestName && isAllowed(proposal) &&
                       (m_source == m_from->place.real || checkUnchanged(proposal));
    std::optional<Moved> outcome = ready ? moved(proposal, nameOf(proposal.source), newName) : std::optional<Moved>();
    // On any problem reopen the folders for the next entry.
    if (!outcome || outcome->astray)
        m_from.reset();
    return outcome;
}

std::optional<MoveSeries::Moved> MoveSeries::moved(const AgentProposal &proposal, const std::string &name,
                                                   const std::string &newName)
{
    // The open folder must hold the entry that was seen.
    const Result<FileAttributes> source = attributesOf(m_from->held.entry(name));
    if (!source || !(source->isFile() || source->isLink()) || FileState::of(*source) != *proposal.seen ||
        !m_services.files.renameHeld(m_from->held, name, m_to->held, newName))
        return std::nullopt;
    const std::optional<EntryMark> mark = EntryMark::of(*proposal.destination);
    if (mark && mark->state.identity == proposal.seen->identity)
        return Moved{*proposal.destination, *mark};
    const Result<FileAttributes> target = attributesOf(m_to->held.entry(newName));
    if (!target || target->identity != proposal.seen->identity)
        return Moved{*proposal.destination, EntryMark{*proposal.seen}}; // removed or replaced by someone after the move
    return takenBack(proposal, name, newName);
}

/// The target path now leads to a different folder than the open one: moves the entry back. If that fails, records
/// where it is for the undo.
std::optional<MoveSeries::Moved> MoveSeries::takenBack(const AgentProposal &proposal, const std::string &name,
                                                       const std::string &newName)
{
    if (m_services.files.renameHeld(m_to->held, newName, m_from->held, name))
        return std::nullopt;
    const std::optional<std::string> folder = realPathOf(m_to->held.number());
    const Location place = folder ? Location(*folder) / newName : *proposal.destination;
    return Moved{place, EntryMark::of(place).value_or(EntryMark{*proposal.seen}), true};
}

} // namespace brellin
