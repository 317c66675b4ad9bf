#include "Agent/AgentJson.h"
#include "App/ProposingCommand.h"
#include "App/TypedLocation.h"

namespace brellin {

namespace {

/// The folder argument of the command.
Result<Location> folderOf(const CommandContext &context)
{
    if (context.arguments.rest().size() != 1)
        return failure(QStringLiteral("Welcher Ordner? brellin analysieren ORDNER"));
    Location folder = typedLocation(context.arguments.rest().front());
    std::error_code error;
    if (!std::filesystem::is_directory(folder, error))
        return failure(QStringLiteral("„%1“ ist kein Ordner.").arg(printable(shown(folder))));
    return folder;
}

void printProfile(Terminal &terminal, const FolderProfile &profile)
{
    std::vector<QStringList> rows;
    for (const ProtectedEntry &entry : profile.protectedEntries)
        rows.push_back({printable(entry.path), printable(entry.reason)});
    terminal.printColumns(rows);
}

} // namespace

ExitCode runAnalyzeCommand(CommandContext &context)
{
    const Result<Location> folder = folderOf(context);
    if (!folder)
        return context.refuse(folder.error().message);
    ProposingCommand command(context);
    CleanupAgent &agent = command.agent();
    if (const std::optional<ExitCode> ended =
            command.propose<AnalysisFindings>([&](const auto &done) { agent.analyze(*folder, done); }))
        return *ended;
    if (agent.pendingProfile.get() && context.arguments.has(QStringLiteral("profil-bestaetigen"))) {
        const FolderProfile profile = *agent.pendingProfile.get();
        if (const std::optional<ExitCode> ended = command.propose<AnalysisFindings>(
                [&](const auto &done) { agent.confirmPendingProfile(profile, done); }))
            return *ended;
    }
    const bool pending = agent.pendingProfile.get().has_value();
    std::optional<FolderProfile> profile = agent.pendingProfile.get();
    if (!profile)
        profile = ProtectedPlaces(agent.profiles.get()).profileOf(*folder);
    if (pending && !context.json()) {
        context.terminal.print(QStringLiteral("Geschützt würden:"));
        printProfile(context.terminal, *profile);
        context.terminal.print(
            QStringLiteral("Bestätigen und weiter prüfen: derselbe Befehl mit --profil-bestaetigen --ausfuehren\n"));
    }
    return command.finish([&](const std::vector<AgentProposal> &proposals) {
        return QJsonObject{{QStringLiteral("profile"), toJson(profile, JsonDates::Iso)},
                           {QStringLiteral("pending"), pending},
                           {QStringLiteral("proposals"), toJson(proposals, JsonDates::Iso)}};
    });
}

ExitCode runReportCommand(CommandContext &context)
{
    std::optional<Location> folder;
    if (!context.arguments.rest().empty()) {
        const Result<Location> given = folderOf(context);
        if (!given)
            return context.refuse(given.error().message);
        folder = *given;
    }
    ProposingCommand command(context);
    CleanupAgent &agent = command.agent();
    const std::optional<ExitCode> ended =
        folder ? command.propose<AnalysisFindings>([&](const auto &done) { agent.analyze(*folder, done); })
               : command.propose<ScanFindings>([&](const auto &done) {
                     agent.scan(CleanupAgent::Search::RulesAndDuplicates, CleanupAgent::ScanPurpose::ProposeOnly, done);
                 });
    if (ended)
        return *ended;
    if (agent.pendingProfile.get())
        context.terminal.message(agent.status.get());
    const Result<ReviewReport> report = agent.writeReport(folder);
    if (!report)
        return context.refuse(report.error().message);
    if (!context.json()) {
        context.terminal.print(printable(shown(report->file)) + QStringLiteral("\n\n") + report->request);
        return ExitCode::Done;
    }
    QJsonObject answer{{QStringLiteral("report"), toJson(report->file)}, {QStringLiteral("request"), report->request}};
    command.addNotSearched(answer);
    context.terminal.printJson(answer);
    return ExitCode::Done;
}

} // namespace brellin
