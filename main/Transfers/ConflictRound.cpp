#include "Transfers/ConflictRound.h"

#include "Transfers/TransferEngine.h"

#include <algorithm>
#include <utility>

namespace brellin {

using Placing = TransferDecision::Placing;

namespace {

/// With the path of the merged folder it goes into.
QString nameOf(const ExaminedSource &source)
{
    return source.inside.empty() ? shownName(source.dst) : shown(source.inside / source.dst.filename());
}

} // namespace

ConflictRound::ConflictRound(std::vector<ExaminedSource> sources, std::size_t transferred)
    : m_open(std::make_move_iterator(sources.begin()), std::make_move_iterator(sources.end()))
    , m_transferred(transferred)
{
    goOn();
}

std::size_t ConflictRound::conflictsLeft() const
{
    return static_cast<std::size_t>(
        std::ranges::count_if(m_open, [](const ExaminedSource &one) { return one.taken.has_value(); }));
}

std::optional<ConflictRound::About> ConflictRound::question() const
{
    if (m_cancelled || m_open.empty() || m_merging)
        return std::nullopt;
    const TakenPlace &taken = *m_open.front().taken;
    const QString name = nameOf(m_open.front());
    if (m_asksForGood)
        return NoTrashQuestion{name, taken.existingIsFolder, taken.existingLine};
    return ConflictQuestion{name,
                            conflictsLeft(),
                            taken.existingIsFolder,
                            taken.stays,
                            taken.existingLine,
                            taken.incomingLine,
                            taken.incomingIsFolder,
                            taken.merge,
                            mayWait(),
                            m_transferred};
}

bool ConflictRound::mayWait() const
{
    const bool others = !m_decisions.empty() || conflictsLeft() < m_open.size();
    return m_transferred == 0 && others;
}

std::optional<ExaminedSource> ConflictRound::toMerge() const
{
    return m_merging && !m_cancelled ? std::optional(m_open.front()) : std::nullopt;
}

void ConflictRound::merge(ExaminedMerge content)
{
    m_merging = false;
    m_open.pop_front();
    m_open.insert(m_open.begin(), std::make_move_iterator(content.sources.begin()),
                  std::make_move_iterator(content.sources.end()));
    m_merged.insert(m_merged.end(), std::make_move_iterator(content.folders.begin()),
                    std::make_move_iterator(content.folders.end()));
    goOn();
}

void ConflictRound::answer(const TransferAnswer &given)
{
    if (question())
        std::visit([this](const auto &one) { answer(one); }, given);
}

void ConflictRound::answer(const ConflictAnswer &answer)
{
    if (m_asksForGood)
        return;
    if (!answer.choice) {
        m_cancelled = true;
        return;
    }
    const ConflictQuestion asked = std::get<ConflictQuestion>(*question());
    if ((*answer.choice == ConflictChoice::replace && !asked.replaceable()) ||
        (*answer.choice == ConflictChoice::merge && !asked.merge) ||
        (*answer.choice == ConflictChoice::later && !asked.mayWait))
        return;
    if (answer.forAll && *answer.choice == ConflictChoice::merge)
        m_mergeAll = true;
    else if (answer.forAll)
        m_forAll = answer.choice;
    if (decide(*answer.choice))
        goOn();
}

void ConflictRound::answer(const Confirmation &answer)
{
    if (!m_asksForGood)
        return;
    m_asksForGood = false;
    switch (answer) {
    case Confirmation::Cancel:
        m_cancelled = true;
        return;
    case Confirmation::Yes:
        take(Placing::Replace, m_open.front().taken->seen);
        break;
    case Confirmation::No:
        m_open.pop_front();
        break;
    }
    goOn();
}

/// Decides sources until one needs a question.
void ConflictRound::goOn()
{
    while (!m_open.empty()) {
        const ExaminedSource &next = m_open.front();
        if (!next.taken) {
            take(next.beside ? Placing::FreeName : Placing::Exactly);
            continue;
        }
        const std::optional<ConflictChoice> applies = choiceForAll(*next.taken);
        if (!applies || !decide(*applies))
            return;
    }
}

/// An answer that replaces single entries says nothing about a folder as a whole where folders are merged.
std::optional<ConflictChoice> ConflictRound::choiceForAll(const TakenPlace &taken) const
{
    if (m_mergeAll && taken.merge)
        return ConflictChoice::merge;
    const bool spared = !taken.replaceable() || (taken.merge && !m_merged.empty());
    return m_forAll == ConflictChoice::replace && spared ? std::nullopt : m_forAll;
}

void ConflictRound::putOffConflicts()
{
    std::deque<ExaminedSource> free;
    for (ExaminedSource &one : m_open) {
        if (one.taken)
            m_putOff.push_back({one.src, one.dst});
        else
            free.push_back(std::move(one));
    }
    m_open = std::move(free);
}

/// Applies a choice to the first open source; false if it needs another question.
bool ConflictRound::decide(ConflictChoice choice)
{
    const TakenPlace &taken = *m_open.front().taken;
    switch (choice) {
    case ConflictChoice::skip:
        m_open.pop_front();
        return true;
    case ConflictChoice::keepBoth:
        take(Placing::FreeName);
        return true;
    case ConflictChoice::later:
        putOffConflicts();
        return true;
    case ConflictChoice::merge:
        m_merging = true;
        return false;
    case ConflictChoice::replace:
        break;
    }
    if (!taken.trashable) {
        m_asksForGood = true;
        return false;
    }
    take(Placing::Replace);
    return true;
}

void ConflictRound::take(Placing placing, std::shared_ptr<const SeenTree> removedForGood)
{
    const ExaminedSource source = std::move(m_open.front());
    m_open.pop_front();
    m_decisions.push_back({source.src, source.dst, placing, std::move(removedForGood)});
}

std::vector<TransferStep> stepsFor(const std::vector<TransferDecision> &decisions)
{
    std::set<Location> taken;
    for (const TransferDecision &decision : decisions) {
        if (decision.placing != Placing::FreeName)
            taken.insert(decision.dst);
    }
    std::vector<TransferStep> steps;
    steps.reserve(decisions.size());
    for (const TransferDecision &decision : decisions) {
        TransferStep step{decision.src, decision.dst, decision.placing == Placing::Replace, decision.removedForGood};
        if (decision.placing == Placing::FreeName) {
            step.dst = uniqueURL(decision.dst.filename().native(), decision.dst.parent_path(), taken);
            taken.insert(step.dst);
        }
        steps.push_back(std::move(step));
    }
    return steps;
}

} // namespace brellin
