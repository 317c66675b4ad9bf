#pragma once

#include "Transfers/Examination.h"
#include "Transfers/TransferQuestion.h"

#include <deque>
#include <set>

namespace brellin {

/// What is to become of one source.
struct TransferDecision {
    enum class Placing { Exactly, FreeName, Replace };
    Location src;
    Location dst; ///< where it would go by its own name
    Placing placing = Placing::Exactly;
    std::shared_ptr<const SeenTree> removedForGood; ///< as of a step

    bool operator==(const TransferDecision &) const = default;
};

/// The questions about taken names, one by one in the order of the sources, and what comes of the answers. Knows no disk.
class ConflictRound {
public:
    using About = decltype(TransferQuestion::about);

    explicit ConflictRound(std::vector<ExaminedSource> sources);

    /// What is to be asked now; nothing once everything is decided.
    std::optional<About> question() const;
    /// An answer of another kind than the question's is dropped.
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
    bool m_asksForGood = false; ///< whether the first open one, which is to be replaced, may be removed for good
    bool m_cancelled = false;
};

/// The steps of what was decided: finds the free names. On a worker.
std::vector<TransferStep> stepsFor(const std::vector<TransferDecision> &decisions);

} // namespace brellin
