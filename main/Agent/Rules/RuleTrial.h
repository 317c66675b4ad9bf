#pragma once

#include "Agent/Rules/CleanupRule.h"
#include "Agent/Rules/RuleExplanation.h"
#include "Agent/Rules/RuleServices.h"
#include "Agent/Rules/RuleWarnings.h"
#include "Base/Job.h"
#include "Base/Published.h"
#include "Guard/FolderProfile.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace brellin {

/// A file that the tried rule would take.
struct TrialFile {
    AgentProposal::Kind kind = AgentProposal::Kind::Move;
    Location source;
    std::optional<Location> destination; ///< none for the Trash; where the model chooses, the folder it chooses in
    bool chosenByModel = false;

    bool operator==(const TrialFile &) const = default;
};

/// What one rule would do now, among all the others.
struct TrialOutcome {
    std::vector<TrialFile> files;    ///< the first ones
    std::int64_t count = 0;          ///< all of them
    std::int64_t bytes = 0;          ///< of all of them
    std::int64_t leftForScripts = 0; ///< of all rules
    std::int64_t keptNames = 0;      ///< files that the rule would rename, had they not such names already
    std::int64_t refused = 0;        ///< files that stay because the agent never puts anything into the target
    std::int64_t copied = 0;         ///< files whose copy stands in the target already

    bool operator==(const TrialOutcome &) const = default;
    /// "Diese Regel würde jetzt 12 Dateien verschieben (3,4 MB).", and how many files it takes that stay as they are.
    QString text(RuleAction action) const;
};

/// Tries the rules as a scan would and gives what `edited` takes; the rule of its id gives way to it, a new one comes last.
/// Switched off it is tried all the same. Reads only. Fails only when cancelled.
Result<TrialOutcome> tryRule(const RuleServices &services, std::vector<CleanupRule> rules, CleanupRule edited,
                             const std::vector<FolderProfile> &profiles, std::size_t most, JobControl *control);

/// The live test beside the rule editor: tries what is being typed, a moment after the last key. Lives on the main thread.
class RuleTrial : public Model<RuleTrial> {
public:
    Published<std::optional<TrialOutcome>> outcome; ///< of the rule last tried; stays until the next is there
    Published<bool> running; ///< waiting or at work: `outcome` is not that of the rule as it is now
    Published<std::vector<RuleWarning>> warnings; ///< of the rule last looked at; stay until the next are there
    Published<std::optional<Location>> explained; ///< the file that `explanation` is about
    Published<std::optional<RuleExplanation>> explanation;

    /// The services outlive it.
    explicit RuleTrial(const RuleServices &services, std::chrono::milliseconds delay = std::chrono::milliseconds(300));
    ~RuleTrial() override;

    /// Tries this copy of a rule in place of the one with its id.
    void setRule(const CleanupRule &edited, const std::vector<CleanupRule> &rules,
                 const std::vector<FolderProfile> &profiles);
    /// The file that is explained, now and with every change of the rule; nothing: none.
    void explain(const std::optional<Location> &file);
    void cancel();

private:
    struct Answer {
        TrialOutcome outcome;
        std::optional<RuleExplanation> explanation;
    };

    void restart();
    void giveUp();
    void begin();
    void lookForWarnings();
    void take(Result<Answer> answer);

    RuleServices m_services;
    CleanupRule m_edited;
    std::vector<CleanupRule> m_rules;
    std::vector<FolderProfile> m_profiles;
    QTimer m_delay;
    const std::shared_ptr<QThreadPool> m_pool; ///< a folder that does not answer keeps its thread
    std::unique_ptr<Job<std::vector<RuleWarning>>> m_looking;
    std::unique_ptr<Job<Result<Answer>>> m_job;
};

} // namespace brellin
