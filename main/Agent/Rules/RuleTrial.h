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

/// A file that the edited rule would take.
struct TrialFile {
    AgentProposal::Kind kind = AgentProposal::Kind::Move;
    Location source;
    std::optional<Location> destination; ///< none for the Trash; if the model chooses, the folder in which it does
    bool chosenByModel = false;

    bool operator==(const TrialFile &) const = default;
};

/// What one rule would do now, given all the others.
struct TrialOutcome {
    std::vector<TrialFile> files;          ///< at most the number asked for
    std::int64_t count = 0;                ///< of all files
    std::int64_t bytes = 0;                ///< of all files
    std::int64_t leftForScripts = 0;       ///< over all rules
    std::int64_t keptNames = 0;            ///< files not renamed because they already match the pattern
    std::int64_t refused = 0;              ///< files that stay because the agent must not write to the target
    std::int64_t copied = 0;               ///< files whose copy already exists in the target
    std::vector<Location> unreadable = {}; ///< folders of the rule that could not be searched, by path

    bool operator==(const TrialOutcome &) const = default;
    /// "Diese Regel würde jetzt 12 Dateien verschieben (3,4 MB).", how many of its files stay as they are, and how many
    /// folders are not known.
    QString text(RuleAction action) const;
};

/// Evaluates the rules as in a scan and returns what `edited` takes. It replaces the rule with its id, or is appended
/// if new, and counts as enabled. Read-only. Fails only when cancelled.
Result<TrialOutcome> tryRule(const RuleServices &services, std::vector<CleanupRule> rules, CleanupRule edited,
                             const std::vector<FolderProfile> &profiles, std::size_t most, JobControl *control);

/// The live preview of the rule editor: tries the rule shortly after the last change. Lives on the main thread.
class RuleTrial : public Model<RuleTrial> {
public:
    Published<std::optional<TrialOutcome>> outcome; ///< of the last trial; kept until the next result
    Published<bool> running;                        ///< waiting or working: `outcome` is out of date
    Published<std::vector<RuleWarning>> warnings;   ///< of the last check; kept until the next result
    Published<std::optional<Location>> explained;   ///< the file described by `explanation`
    Published<std::optional<RuleExplanation>> explanation;

    /// The services must outlive this object.
    explicit RuleTrial(const RuleServices &services, std::chrono::milliseconds delay = std::chrono::milliseconds(300));
    ~RuleTrial() override;

    /// Tries this edited copy in place of the rule with its id.
    void setRule(const CleanupRule &edited, const std::vector<CleanupRule> &rules,
                 const std::vector<FolderProfile> &profiles);
    /// The file to explain, now and after every change of the rule; nullopt: none.
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
    const std::shared_ptr<QThreadPool> m_pool; ///< own pool: an unresponsive volume blocks its thread
    std::unique_ptr<Job<std::vector<RuleWarning>>> m_looking;
    std::unique_ptr<Job<Result<Answer>>> m_job;
};

} // namespace brellin
