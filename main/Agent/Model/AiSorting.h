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

/// A stored answer of the language model. Valid while the file is unchanged and, if an existing sub-folder was chosen,
/// while that still exists.
struct AiAnswer {
    QUuid rule;
    FileState file;
    Location base; ///< the folder in which the model chose
    QString folder;
    bool existed = false; ///< the sub-folder existed already

    bool operator==(const AiAnswer &) const = default;
};

/// Asks the language model for the destinations of one scan. Answers are stored; files left when the time is up are
/// asked about in the next scan.
class AiSorting {
public:
    /// Time limit for all questions of one scan.
    static constexpr std::chrono::minutes budget{3};
    /// Time limit for a single answer.
    static constexpr std::chrono::milliseconds answerLimit{30'000};

    /// `control` must outlive this object.
    AiSorting(const ModelServices &services, const JobControl &control);

    /// The destination of a candidate: a free name in the sub-folder that the model chose. nullopt without an answer,
    /// or if the file is already there.
    std::optional<Location> destinationOf(const Candidate &candidate);
    /// Stores the answers for the next scan.
    void remember() const;
    /// Describes the stored list of answers.
    static StoredKind answersKind();

private:
    std::optional<QString> answerFor(const Candidate &candidate);
    std::optional<QString> keptAnswer(const Candidate &candidate, const FileState &state);
    std::optional<QString> ask(const Candidate &candidate, const FileState &state);
    QStringList &existingIn(const Location &base);

    ModelServices m_services;
    const JobControl &m_control;
    std::vector<AiAnswer> m_answers;            ///< newest last
    std::map<Location, QStringList> m_existing; ///< including folders this scan will create
    std::optional<bool> m_available;
    std::chrono::steady_clock::time_point m_end;
    bool m_changed = false;
};

} // namespace brellin
