#include "Agent/AgentJson.h"
#include "Agent/CleanupAgent.h"
#include "Agent/RulesFile.h"
#include "App/Command.h"
#include "Disk/FileAttributes.h"
#include "System/FileLock.h"

namespace brellin {

namespace {

/// What a rule does, in a few words.
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

ExitCode exportRules(const CommandContext &context, const std::vector<CleanupRule> &rules)
{
    const std::vector<std::string> &words = context.arguments.rest();
    if (words.size() < 2) {
        context.terminal.printJson(toJson(rules));
        return ExitCode::Done;
    }
    const Location file = words[1];
    if (entryExists(file))
        return context.refuse(QStringLiteral("„%1“ gibt es schon.").arg(printable(shownName(file))));
    if (const Result<void> written = writeAtomically(file, writeRules(rules)); !written)
        return context.refuse(printable(shownName(file)) + QStringLiteral(": ") + written.error().message);
    if (context.json())
        context.terminal.printJson(toJson(rules));
    return ExitCode::Done;
}

ExitCode importRules(const CommandContext &context, CleanupAgent &agent)
{
    const Location file = context.arguments.rest()[1];
    const Result<QByteArray> text = readWhole(file);
    if (!text)
        return context.refuse(printable(shownName(file)) + QStringLiteral(": ") + text.error().message);
    const Result<std::vector<CleanupRule>> read = readRules(*text);
    if (!read)
        return context.refuse(printable(read.error().message));
    if (const Result<void> stored = agent.updateRules([&](const auto &) { return *read; }); !stored)
        return context.refuse(stored.error().message);
    return printRules(context, agent.rules.get());
}

} // namespace

ExitCode runRulesCommand(CommandContext &context)
{
    const std::vector<std::string> &words = context.arguments.rest();
    const QString word = words.empty() ? QString() : asciiWord(words[0]);
    const bool changes = word == QStringLiteral("import") || word == QStringLiteral("beispiele");
    CleanupAgent agent(changes ? context.services.forAgent() : context.services.forProposingAgent());
    if (words.empty())
        return printRules(context, agent.rules.get());
    if (word == QStringLiteral("export") && words.size() <= 2)
        return exportRules(context, agent.rules.get());
    if (word == QStringLiteral("import") && words.size() == 2)
        return importRules(context, agent);
    if (word == QStringLiteral("beispiele") && words.size() == 1) {
        if (const Result<void> added = agent.addExampleRules(); !added)
            return context.refuse(added.error().message);
        return printRules(context, agent.rules.get());
    }
    if (changes || word == QStringLiteral("export"))
        return context.refuse(QStringLiteral("So nicht: brellin regeln [export [DATEI] | import DATEI | beispiele]"));
    return context.refuse(
        unknownWordMessage(QStringLiteral("Unbekannter Befehl"), printable(word),
                           {QStringLiteral("export"), QStringLiteral("import"), QStringLiteral("beispiele")}));
}

} // namespace brellin
