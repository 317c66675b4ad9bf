#include "Agent/AgentJson.h"
#include "Agent/AgentKeys.h"
#include "Agent/CleanupAgent.h"
#include "Agent/Rules/RulesFile.h"
#include "App/ListCommand.h"
#include "App/StoredData.h"

namespace brellin {

namespace {

/// A short description of a rule.
QString summaryOf(const CleanupRule &rule, const Location &home)
{
    const QString inside = rule.includeSubfolders ? QStringLiteral(" (mit Unterordnern)") : QString();
    switch (rule.action) {
    case RuleAction::Trash:
        return QStringLiteral("→ In den Papierkorb") + inside;
    case RuleAction::Rename:
        return QStringLiteral("→ Umbenennen in „") + printable(rule.renamePattern) + QStringLiteral("“") + inside;
    case RuleAction::Copy:
    case RuleAction::Move:
    case RuleAction::AiSort:
        break;
    }
    return QStringLiteral("→ ") + printable(locationFromText(rule.targetPath), home) + inside;
}

ExitCode printRules(const CommandContext &context, const std::vector<CleanupRule> &rules)
{
    if (context.json()) {
        context.terminal.printJson(toJson(rules, JsonDates::Iso));
        return ExitCode::Done;
    }
    const Location &home = context.services.folders().home;
    std::vector<QStringList> rows;
    for (const CleanupRule &rule : rules) {
        const QString number = QString::number(rows.size() + 1) + u'.';
        const QString source = printable(locationFromText(rule.sourcePath), home);
        QString remarks = rule.enabled ? QString() : QStringLiteral("  – ausgeschaltet");
        if (rule.automatic)
            remarks += QStringLiteral("  – automatisch");
        rows.push_back({number, printable(rule.name), source, summaryOf(rule, home) + remarks});
    }
    context.terminal.printColumns(rows, 0);
    if (rules.empty())
        context.terminal.print(QStringLiteral("Keine Regeln. „brellin regeln beispiele“ legt die Beispiele an."));
    return ExitCode::Done;
}

ExitCode importRules(const CommandContext &context, CleanupAgent &agent)
{
    const Result<QByteArray> text = importedText(context);
    const Result<std::vector<CleanupRule>> read =
        text ? readRules(*text) : Result<std::vector<CleanupRule>>(failure(text.error()));
    if (!read)
        return context.refuse(printable(read.error().message));
    if (const Result<void> stored = agent.updateRules([&](const auto &) { return *read; }); !stored)
        return context.refuse(stored.error().message);
    return printRules(context, agent.rules.get());
}

ExitCode addExamples(const CommandContext &context, CleanupAgent &agent)
{
    if (const Result<void> added = agent.addExampleRules(); !added)
        return context.refuse(added.error().message);
    return printRules(context, agent.rules.get());
}

} // namespace

ExitCode runRulesCommand(CommandContext &context)
{
    const Result<ListVerb> verb =
        listVerb(context, QStringLiteral("regeln"),
                 {QStringLiteral("export"), QStringLiteral("import"), QStringLiteral("beispiele")});
    if (!verb)
        return context.refuse(printable(verb.error().message));
    if (const std::optional<ExitCode> damaged = refuseIfDamaged(context, AgentKeys::rules))
        return *damaged;
    const bool changes = *verb == ListVerb::Import || *verb == ListVerb::Examples;
    CleanupAgent agent(changes ? context.services.forAgent() : context.services.forProposingAgent());
    switch (*verb) {
    case ListVerb::Show:
        return printRules(context, agent.rules.get());
    case ListVerb::Export:
        return exportList(context, writeRules(agent.rules.get()), toJson(agent.rules.get()));
    case ListVerb::Import:
        return importRules(context, agent);
    case ListVerb::Examples:
        return addExamples(context, agent);
    }
    return ExitCode::NotPossible;
}

} // namespace brellin
