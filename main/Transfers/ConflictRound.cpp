#include "Transfers/ConflictRound.h"

#include "Transfers/TransferEngine.h"

#include <algorithm>
#include <utility>

namespace brellin {

using Placing = TransferDecision::Placing;

ConflictRound::ConflictRound(std::vector<ExaminedSource> sources)
    : m_open(std::make_move_iterator(sources.begin()), std::make_move_iterator(sources.end()))
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
    if (m_cancelled || m_open.empty())
        return std::nullopt;
    const TakenPlace &taken = *m_open.front().taken;
    const QString name = shownName(m_open.front().dst);
    if (m_asksForGood)
        return NoTrashQuestion{name, taken.existingIsFolder, taken.existingLine};
    return ConflictQuestion{name,
                            conflictsLeft(),
                            taken.existingIsFolder,
                            taken.stays,
                            taken.existingLine,
                            taken.incomingLine,
                            taken.incomingIsFolder};
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
    if (*answer.choice == ConflictChoice::replace && !m_open.front().taken->replaceable())
        return;
    if (answer.forAll)
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
        const bool applies = m_forAll && (*m_forAll != ConflictChoice::replace || next.taken->replaceable());
        if (!applies || !decide(*m_forAll))
            return;
    }
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
