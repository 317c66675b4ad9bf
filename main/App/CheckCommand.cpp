#include "Agent/AgentJson.h"
#include "App/ProposingCommand.h"
#include "App/TypedLocation.h"
#include "Base/German.h"

namespace brellin {

namespace {

QJsonArray pairsOf(const std::vector<AgentProposal> &proposals)
{
    QJsonArray pairs;
    for (const AgentProposal &proposal : proposals)
        pairs.append(QJsonObject{{QStringLiteral("duplicate"), toJson(proposal.source)},
                                 {QStringLiteral("kept"), toJson(proposal.keptCopy)}});
    return pairs;
}

qint64 bytesOf(const std::vector<AgentProposal> &proposals)
{
    qint64 bytes = 0;
    for (const AgentProposal &proposal : proposals)
        bytes += proposal.seen ? proposal.seen->size : 0;
    return bytes;
}

QJsonArray refusedOf(const std::vector<RefusedTarget> &refused)
{
    QJsonArray rules;
    for (const RefusedTarget &one : refused)
        rules.append(QJsonObject{{QStringLiteral("rule"), one.name},
                                 {QStringLiteral("files"), static_cast<qint64>(one.files)},
                                 {QStringLiteral("reason"), one.text()}});
    return rules;
}

void sayIfCapped(const CommandContext &context, const ScanFindings &found)
{
    if (found.duplicatesCapped)
        context.terminal.message(QStringLiteral("Auf Doppelte wurden nur die ersten %1 Dateien verglichen.")
                                     .arg(german().toString(static_cast<qlonglong>(found.duplicateFiles))));
}

} // namespace

ExitCode runCheckCommand(CommandContext &context)
{
    if (!context.arguments.rest().empty())
        return context.refuse(QStringLiteral("„pruefen“ nimmt keine Ordner: geprüft werden die Ordner deiner Regeln."));
    ProposingCommand command(context);
    CleanupAgent &agent = command.agent();
    const auto search = context.arguments.has(QStringLiteral("doppelte")) ? CleanupAgent::Search::RulesAndDuplicates
                                                                          : CleanupAgent::Search::Rules;
    if (const std::optional<ExitCode> ended = command.propose<ScanFindings>(
            [&](const auto &done) { agent.scan(search, CleanupAgent::ScanPurpose::ProposeOnly, done); }))
        return *ended;
    const ScanFindings &found = agent.findings();
    sayIfCapped(context, found);
    if (found.leftForScripts > 0)
        command.remark(counted(found.leftForScripts, QStringLiteral("bleibt"), QStringLiteral("bleiben")) +
                       QStringLiteral(" (von Skripten benutzt)"));
    const ExitCode code = command.finish([&](const std::vector<AgentProposal> &proposals) {
        return QJsonObject{{QStringLiteral("proposals"), toJson(proposals, JsonDates::Iso)},
                           {QStringLiteral("checkedFiles"), static_cast<qint64>(found.checkedFiles)},
                           {QStringLiteral("leftForScripts"), static_cast<qint64>(found.leftForScripts)},
                           {QStringLiteral("duplicates"), static_cast<qint64>(found.duplicates)},
                           {QStringLiteral("refusedTargets"), refusedOf(found.refusedTargets)}};
    });
    if (!command.executes() || (code != ExitCode::Done && code != ExitCode::Failed))
        return code;
    if (const Result<void> noted = agent.noteChecked(); !noted) {
        context.terminal.message(noted.error().message);
        return ExitCode::Failed;
    }
    return code;
}

ExitCode runDuplicatesCommand(CommandContext &context)
{
    std::vector<Location> folders;
    for (const std::string &word : context.arguments.rest()) {
        folders.push_back(typedLocation(word));
        std::error_code error;
        if (!std::filesystem::is_directory(folders.back(), error))
            return context.refuse(QStringLiteral("„%1“ ist kein Ordner.").arg(printable(shown(Location(word)))));
        if (!context.services.forAgent().locations.isAllowed(folders.back()))
            return context.refuse(SystemLocations::message());
    }
    if (folders.empty())
        return context.refuse(QStringLiteral("Welche Ordner? brellin doppelte ORDNER…"));
    ProposingCommand command(context);
    CleanupAgent &agent = command.agent();
    if (const std::optional<ExitCode> ended =
            command.propose<ScanFindings>([&](const auto &done) { agent.searchDuplicates(folders, done); }))
        return *ended;
    const ScanFindings &found = agent.findings();
    sayIfCapped(context, found);
    const std::vector<AgentProposal> proposals = agent.proposals.get();
    if (!context.json() && !proposals.empty())
        context.terminal.print(
            QStringLiteral("Doppelt sind %1. Frei wird der Platz erst, wenn der Papierkorb geleert wird.\n")
                .arg(sizeText(bytesOf(proposals))));
    return command.finish([&](const std::vector<AgentProposal> &list) {
        return QJsonObject{{QStringLiteral("pairs"), pairsOf(list)},
                           {QStringLiteral("files"), static_cast<qint64>(found.duplicateFiles)},
                           {QStringLiteral("bytes"), bytesOf(list)},
                           {QStringLiteral("capped"), found.duplicatesCapped}};
    });
}

} // namespace brellin
