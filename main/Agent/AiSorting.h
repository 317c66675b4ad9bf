#pragma once

#include "Agent/AgentServices.h"
#include "Agent/Candidate.h"
#include "Base/JobControl.h"

#include <QUuid>

#include <chrono>
#include <map>
#include <vector>

namespace brellin {

/// An answer of the language model that holds as long as the file stays the same.
struct AiAnswer {
    QUuid rule;
    FileState file;
    QString folder;

    bool operator==(const AiAnswer &) const = default;
};

/// Asks the language model where files of one scan go. Answers are kept from scan to scan; what there was no time to ask
/// is asked at the next one.
class AiSorting {
public:
    /// The longest that one scan spends on asking.
    static constexpr std::chrono::minutes budget{3};
    /// The longest that one answer may take.
    static constexpr std::chrono::milliseconds answerLimit{30'000};

    /// `control` outlives the sorting.
    AiSorting(const AgentServices &services, const JobControl &control);

    /// Where a candidate goes: its name in the sub-folder that the model chose. Nothing when there is no answer.
    std::optional<Location> destinationOf(const Candidate &candidate);
    /// Stores the answers.
    void remember() const;

private:
    std::optional<QString> answerFor(const Candidate &candidate);

    const AgentServices &m_services;
    const JobControl &m_control;
    std::vector<AiAnswer> m_answers; ///< newest last
    std::map<Location, QStringList> m_existing;
    std::optional<bool> m_available;
    std::chrono::steady_clock::time_point m_end;
    bool m_changed = false;
};

} // namespace brellin
