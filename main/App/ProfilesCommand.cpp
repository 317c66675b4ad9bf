#include "Agent/AgentJson.h"
#include "Agent/CleanupAgent.h"
#include "Agent/Rules/RulesFile.h"
#include "App/ListCommand.h"
#include "App/StoredData.h"
#include "Base/German.h"
#include "Guard/GuardKeys.h"

namespace brellin {

namespace {

ExitCode printProfiles(const CommandContext &context, const std::vector<FolderProfile> &profiles)
{
    if (context.json()) {
        context.terminal.printJson(toJson(profiles, JsonDates::Iso));
        return ExitCode::Done;
    }
    const Location &home = context.services.folders().home;
    std::vector<QStringList> rows;
    for (const FolderProfile &profile : profiles)
        rows.push_back({printable(profile.name), printable(profile.root(), home),
                        counted(static_cast<qint64>(profile.protectedEntries.size()),
                                QStringLiteral("geschützter Eintrag"), QStringLiteral("geschützte Einträge")),
                        profile.tidyAllowed ? QStringLiteral("der Rest wird aufgeräumt") : QString()});
    context.terminal.printColumns(rows, 0);
    if (profiles.empty())
        context.terminal.print(QStringLiteral("Noch keine Projekte"));
    return ExitCode::Done;
}

ExitCode importProfiles(const CommandContext &context, CleanupAgent &agent)
{
    const Result<QByteArray> text = importedText(context);
    const Result<std::vector<FolderProfile>> read =
        text ? readProfiles(*text) : Result<std::vector<FolderProfile>>(failure(text.error()));
    if (!read)
        return context.refuse(printable(read.error().message));
    if (const Result<void> stored = agent.updateProfiles([&](const auto &) { return *read; }); !stored)
        return context.refuse(stored.error().message);
    return printProfiles(context, agent.profiles.get());
}

} // namespace

ExitCode runProfilesCommand(CommandContext &context)
{
    const Result<ListVerb> verb =
        listVerb(context, QStringLiteral("profile"), {QStringLiteral("export"), QStringLiteral("import")});
    if (!verb)
        return context.refuse(printable(verb.error().message));
    if (const std::optional<ExitCode> damaged = refuseIfDamaged(context, GuardKeys::profiles))
        return *damaged;
    CleanupAgent agent(*verb == ListVerb::Import ? context.services.forAgent() : context.services.forProposingAgent());
    switch (*verb) {
    case ListVerb::Export:
        return exportList(context, writeProfiles(agent.profiles.get()), toJson(agent.profiles.get()));
    case ListVerb::Import:
        return importProfiles(context, agent);
    case ListVerb::Show:
    case ListVerb::Examples:
        break;
    }
    return printProfiles(context, agent.profiles.get());
}

} // namespace brellin
