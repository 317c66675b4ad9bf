#pragma once

#include "Agent/Model/ModelServices.h"
#include "Agent/Rules/Candidate.h"
#include "Base/JobControl.h"

#include <QUuid>

#include <chrono>
#include <map>
#include <vector>

namespace brellin {

struct StoredKind;

/// An answer of the language model that holds as long as the file stays the same, and the folder that was chosen in has the
/// sub-folder that was chosen.
struct AiAnswer {
    QUuid rule;
    FileState file;
    Location base; ///< the folder in which it was chosen
    QString folder;
    bool existed = false; ///< it was one of the base's sub-folders

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
    AiSorting(const ModelServices &services, const JobControl &control);

    /// Where a candidate goes: a free name in the sub-folder that the model chose. Nothing when there is no answer, or the
    /// file is there.
    std::optional<Location> destinationOf(const Candidate &candidate);
    /// Stores the answers.
    void remember() const;
    /// The list of answers.
    static StoredKind answersKind();

private:
    std::optional<QString> answerFor(const Candidate &candidate);
    std::optional<QString> keptAnswer(const Candidate &candidate, const FileState &state);
    std::optional<QString> ask(const Candidate &candidate, const FileState &state);
    QStringList &existingIn(const Location &base);

    ModelServices m_services;
    const JobControl &m_control;
    std::vector<AiAnswer> m_answers;            ///< newest last
    std::map<Location, QStringList> m_existing; ///< with those that this scan will make
    std::optional<bool> m_available;
    std::chrono::steady_clock::time_point m_end;
    bool m_changed = false;
};

} // namespace brellin
