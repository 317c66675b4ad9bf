#pragma once

#include "Agent/CleanupAgent.h"
#include "App/AgentOperation.h"
#include "App/Command.h"
#include "App/Interruption.h"

#include <QJsonObject>

#include <functional>
#include <optional>

namespace brellin {

/// Shared code of the commands that propose, and execute only on request: options, listing, run and answer.
class ProposingCommand {
public:
    /// "--ausfuehren", "--alle" and "--ohne MUSTER", plus the command's own options.
    static std::vector<OptionSpec> options(std::vector<OptionSpec> own = {});

    explicit ProposingCommand(CommandContext &context);

    CleanupAgent &agent() { return m_agent; }
    bool executes() const;

    /// Runs the search. Returns the exit code if the command ends here: after a failure or Ctrl-C, even if the search
    /// has completed.
    template <class Found>
    std::optional<ExitCode> propose(const std::function<void(const CleanupAgent::Done<Found> &)> &search)
    {
        Result<Found> found = failure(Failure::cancelled());
        if (!m_interruption->heard())
            found = waitFor<Found>(m_agent, m_context.terminal, search);
        return proposed(found ? std::nullopt : std::optional(found.error()));
    }
    /// Appends to the search's summary.
    void remark(const QString &text) { m_found += QStringLiteral(" · ") + text; }
    /// Adds to an answer how many folders the search could not read, and which.
    void addNotSearched(QJsonObject &answer) const;
    /// Lists the proposals, executes them if requested, and prints the answer. `head` returns the command's own JSON
    /// fields.
    ExitCode finish(const std::function<QJsonObject(const std::vector<AgentProposal> &)> &head);

private:
    std::optional<ExitCode> proposed(const std::optional<Failure> &why);
    void applyOptions();
    ExitCode execute();
    ExitCode report(const ExecutionOutcome &outcome) const;

    CommandContext &m_context;
    /// Exists from before recovery until nothing is left that must end cleanly.
    std::optional<InterruptionNote> m_interruption{std::in_place};
    CleanupAgent m_agent;
    QString m_found; ///< summary of the search
    std::vector<Location> m_notSearched;
    std::optional<ExecutionOutcome> m_execution;
};

} // namespace brellin
