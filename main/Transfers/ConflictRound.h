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

    /// `transferred`: number of entries that went before this round, after which nobody is put off again.
    explicit ConflictRound(std::vector<ExaminedSource> sources, std::size_t transferred = 0);

    /// The current question; none when everything is decided or cancelled.
    std::optional<About> question() const;
    /// Ignores answers of another kind than the question.
    void answer(const TransferAnswer &given);

    /// The source to be merged, whose content must be examined next; then there is no question.
    std::optional<ExaminedSource> toMerge() const;
    /// Replaces that source by its content.
    void merge(ExaminedMerge content);

    bool cancelled() const { return m_cancelled; }
    const std::vector<TransferDecision> &decisions() const { return m_decisions; }
    const std::vector<MergedFolder> &merged() const { return m_merged; }
    /// To be asked about after the rest was transferred.
    const std::vector<SourcePlace> &putOff() const { return m_putOff; }

private:
    void answer(const ConflictAnswer &answer);
    void answer(const Confirmation &answer);
    void answer(const ObstacleChoice &) {}
    void goOn();
    bool decide(ConflictChoice choice);
    std::optional<ConflictChoice> choiceForAll(const TakenPlace &taken) const;
    bool mayWait() const;
    void putOffConflicts();
    void take(TransferDecision::Placing placing, std::shared_ptr<const SeenTree> removedForGood = {});
    std::size_t conflictsLeft() const;

    std::deque<ExaminedSource> m_open;
    std::vector<TransferDecision> m_decisions;
    std::vector<MergedFolder> m_merged;
    std::vector<SourcePlace> m_putOff;
    std::optional<ConflictChoice> m_forAll; ///< never `merge` or `later`
    bool m_mergeAll = false;
    bool m_merging = false; ///< the first open source awaits its content
    const std::size_t m_transferred;
    bool m_asksForGood = false; ///< asking whether the first open source may permanently delete what it replaces
    bool m_cancelled = false;
};

/// Turns decisions into steps; chooses free names. Reads the disk, so call on a worker.
std::vector<TransferStep> stepsFor(const std::vector<TransferDecision> &decisions);

} // namespace brellin
