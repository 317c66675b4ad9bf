#pragma once

#include "Transfers/Examination.h"
#include "Transfers/TransferQuestion.h"

#include <deque>
#include <set>

namespace brellin {

/// How to transfer one source.
struct TransferDecision {
    enum class Placing { Exactly, FreeName, Replace };
    Location src;
    Location dst; ///< destination with the source's own name
    Placing placing = Placing::Exactly;
    std::shared_ptr<const SeenTree> removedForGood; ///< see TransferStep::removedForGood

    bool operator==(const TransferDecision &) const = default;
};

/// Asks about name conflicts, one source after the other, and collects the decisions. Does not access the disk.
class ConflictRound {
public:
    using About = decltype(TransferQuestion::about);

    explicit ConflictRound(std::vector<ExaminedSource> sources);

    /// The current question; none when everything is decided or cancelled.
    std::optional<About> question() const;
    /// Ignores answers of another kind than the question.
    void answer(const TransferAnswer &given);

    bool cancelled() const { return m_cancelled; }
    const std::vector<TransferDecision> &decisions() const { return m_decisions; }

private:
    void answer(const ConflictAnswer &answer);
    void answer(const Confirmation &answer);
    void answer(const ObstacleChoice &) {}
    void goOn();
    bool decide(ConflictChoice choice);
    void take(TransferDecision::Placing placing, std::shared_ptr<const SeenTree> removedForGood = {});
    std::size_t conflictsLeft() const;

    std::deque<ExaminedSource> m_open;
    std::vector<TransferDecision> m_decisions;
    std::optional<ConflictChoice> m_forAll;
    bool m_asksForGood = false; ///< asking whether the first open source may permanently delete what it replaces
    bool m_cancelled = false;
};

/// Turns decisions into steps; chooses free names. Reads the disk, so call on a worker.
std::vector<TransferStep> stepsFor(const std::vector<TransferDecision> &decisions);

} // namespace brellin
