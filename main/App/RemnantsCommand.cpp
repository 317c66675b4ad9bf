#include "App/Command.h"
#include "App/Remnants.h"
#include "App/TerminalWork.h"
#include "App/TypedLocation.h"
#include "Base/German.h"
#include "Base/Json.h"
#include "Features/FolderCount.h"

#include <algorithm>
#include <iterator>

namespace brellin {

namespace {

struct MeasuredRemnant {
    Remnant remnant;
    std::int64_t bytes = 0;
};

std::vector<MeasuredRemnant> measured(const std::vector<Remnant> &remnants, const JobControl &control)
{
    std::vector<MeasuredRemnant> all;
    for (const Remnant &one : remnants) {
        const Result<FolderCount> count = countFolder(one.path, &control);
        all.push_back({one, count ? count->bytes : 0});
    }
    return all;
}

void show(CommandContext &context, const std::vector<MeasuredRemnant> &remnants)
{
    QJsonArray list;
    std::vector<QStringList> rows;
    for (const MeasuredRemnant &one : remnants) {
        list.append(QJsonObject{{QStringLiteral("kind"), one.remnant.word()},
                                {QStringLiteral("path"), toJson(one.remnant.path)},
                                {QStringLiteral("bytes"), static_cast<qint64>(one.bytes)}});
        rows.push_back(
            {one.remnant.title(), sizeText(one.bytes), printable(one.remnant.path, context.services.folders().home)});
    }
    if (context.json())
        context.terminal.printJson(list);
    else if (remnants.empty())
        context.terminal.print(QStringLiteral("Es sind keine Reste da."));
    else
        context.terminal.printColumns(rows, 0);
}

bool holds(const std::vector<Remnant> &remnants, Remnant::Kind kind)
{
    return std::ranges::find(remnants, kind, &Remnant::kind) != remnants.end();
}

/// Prints what the user can do about remnants that cannot be settled.
void advise(CommandContext &context, const std::vector<Remnant> &remnants)
{
    if (holds(remnants, Remnant::Kind::Undo))
        context.terminal.message(QStringLiteral("Das Zurücknehmen geht weiter mit: brellin rueckgaengig"));
    if (holds(remnants, Remnant::Kind::Unresolved))
        context.terminal.message(QStringLiteral(
            "Was in einem ungeklärten Protokoll steht, fehlt im Verlauf und unter den Resten. Es bleibt, "
            "bis du es in den Papierkorb legst: brellin papierkorb DATEI"));
    for (const UnreadLog &log : unreadLogs(context.services))
        context.terminal.message(printable(log.text()));
}

/// Settles remnants; returns the failures and those that remain for other reasons, such as a running process.
QStringList settled(Services &services, const std::vector<Location> &folders)
{
    QStringList failures = linesOf(settleRemnants(services, folders));
    for (const Remnant &one : findRemnants(services, folders)) {
        if (one.canBeSettled())
            failures << QStringLiteral("Nicht aufgeräumt: ") + printable(one.path, services.folders().home);
    }
    return failures;
}

ExitCode settle(CommandContext &context, const std::vector<Location> &folders)
{
    const auto failures = workWithProgress<QStringList>(
        context.terminal, [&](JobControl &) { return settled(context.services, folders); },
        [](const JobControl &) { return QStringLiteral("Räume Reste auf"); });
    for (const QString &line : failures)
        context.terminal.message(printable(line));
    return failures.isEmpty() ? ExitCode::Done : ExitCode::Failed;
}

} // namespace

ExitCode runRemnantsCommand(CommandContext &context)
{
    std::vector<Location> folders;
    std::ranges::transform(context.arguments.rest(), std::back_inserter(folders), typedLocation);
    for (const Location &folder : folders) {
        std::error_code unknown;
        if (!std::filesystem::is_directory(folder, unknown))
            return context.refuse(QStringLiteral("„%1“ ist kein Ordner.").arg(printable(shown(folder))));
    }
    folders = foldersToSearch(context.services, folders);
    std::vector<Remnant> found;
    const auto measuredOnes = workWithProgress<std::vector<MeasuredRemnant>>(
        context.terminal,
        [&](JobControl &control) {
            found = findRemnants(context.services, folders);
            return measured(found, control);
        },
        [](const JobControl &) { return QStringLiteral("Suche nach Resten"); });
    show(context, measuredOnes);
    advise(context, found);
    if (!std::ranges::any_of(found, &Remnant::canBeSettled))
        return ExitCode::Done;
    if (context.arguments.has(QStringLiteral("aufraeumen")))
        return settle(context, folders);
    context.terminal.message(QStringLiteral("Aufräumen: derselbe Befehl mit --aufraeumen"));
    return ExitCode::Done;
}

} // namespace brellin
