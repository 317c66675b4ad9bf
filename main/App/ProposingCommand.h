#pragma once

#include "Agent/CleanupAgent.h"
#include "App/Command.h"
#include "App/Interruption.h"

#include <QJsonObject>

#include <functional>
#include <optional>

namespace brellin {

/// What the commands have in common that propose, and carry out only when told: the options, the listing, the run and the
/// answer.
class ProposingCommand {
public:
    /// "--ausfuehren", "--alle" and "--ohne MUSTER", with what else the command knows.
    static std::vector<OptionSpec> options(std::vector<OptionSpec> own = {});

    explicit ProposingCommand(CommandContext &context);

    CleanupAgent &agent() { return m_agent; }
    bool executes() const;

    /// Has the agent search. Nothing where that worked, else how the command ends: Ctrl-C ends it also where the search did
    /// not notice any more.
    std::optional<ExitCode> propose(const std::function<void()> &search);
    /// Adds to the line that sums up the search.
    void remark(const QString &text) { m_found += QStringLiteral(" · ") + text; }
    /// Lists what was found, carries it out if told so, and answers: `head` are the command's own JSON fields.
    ExitCode finish(const std::function<QJsonObject(const std::vector<AgentProposal> &)> &head);

private:
    void applyOptions();
    ExitCode execute();
    ExitCode report(const ExecutionOutcome &outcome) const;

    CommandContext &m_context;
    /// From before the agent takes over what a killed program left, until nothing is left that must end in order.
    std::optional<InterruptionNote> m_interruption{std::in_place};
    CleanupAgent m_agent;
    QString m_found; ///< the summary of the search
};

} // namespace brellin
