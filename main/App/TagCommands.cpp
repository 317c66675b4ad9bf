#include "App/AgentOperation.h"
#include "App/Command.h"
#include "App/TerminalWork.h"
#include "App/TypedLocation.h"
#include "Base/Json.h"
#include "Disk/FileAttributes.h"
#include "Disk/UnreadableFolders.h"
#include "Features/FileTags.h"

namespace brellin {

namespace {

/// Prints entries with their tags, as JSON or as text.
void printTags(CommandContext &context, const std::vector<Location> &entries)
{
    QJsonArray list;
    std::vector<QStringList> rows;
    for (const Location &entry : entries) {
        const QStringList tags = FileTags::tags(entry);
        list.append(QJsonObject{{QStringLiteral("path"), toJson(entry)},
                                {QStringLiteral("tags"), QJsonArray::fromStringList(tags)}});
        rows.push_back({printable(entry, context.services.folders().home), printable(tags.join(QStringLiteral(", ")))});
    }
    if (context.json())
        context.terminal.printJson(list);
    else
        context.terminal.printColumns(rows, 0);
}

/// The entries that exist; reports the others.
std::vector<Location> existing(const CommandContext &context, const std::vector<std::string> &words, std::size_t from)
{
    std::vector<Location> entries;
    for (std::size_t i = from; i < words.size(); ++i) {
        const Location entry = typedLocation(words[i]);
        if (const Result<FileAttributes> there = readAttributes(entry))
            entries.push_back(entry);
        else
            context.terminal.message(printable(shown(Location(words[i]))) + QStringLiteral(": ") +
                                     there.error().message);
    }
    return entries;
}

ExitCode exitCode(std::size_t wanted, std::size_t done)
{
    return done == wanted ? ExitCode::Done : done == 0 ? ExitCode::NotPossible : ExitCode::Failed;
}

} // namespace

ExitCode runTagCommand(CommandContext &context)
{
    const std::vector<std::string> &words = context.arguments.rest();
    if (words.size() < 2)
        return context.refuse(QStringLiteral("So nicht: brellin markieren NAME DATEI… [--entfernen]"));
    const QString tag = QString::fromStdString(words.front());
    const std::vector<Location> entries = existing(context, words, 1);
    if (entries.empty())
        return ExitCode::NotPossible;
    const bool remove = context.arguments.has(QStringLiteral("entfernen"));
    std::size_t done = 0;
    for (const Location &entry : entries) {
        const Result<void> changed = remove ? FileTags::remove(tag, {entry}) : FileTags::add(tag, {entry});
        if (changed)
            ++done;
        else
            context.terminal.message(printable(changed.error().message));
    }
    printTags(context, entries);
    return exitCode(words.size() - 1, done);
}

ExitCode runTagsCommand(CommandContext &context)
{
    const std::vector<std::string> &words = context.arguments.rest();
    if (words.empty())
        return context.refuse(QStringLiteral("Welche Dateien? brellin markierungen DATEI…"));
    const std::vector<Location> entries = existing(context, words, 0);
    printTags(context, entries);
    return exitCode(words.size(), entries.size());
}

ExitCode runTaggedCommand(CommandContext &context)
{
    const std::vector<std::string> &words = context.arguments.rest();
    const std::vector<std::string> folders = context.arguments.values(QStringLiteral("in"));
    if (words.size() != 1 || folders.size() > 1)
        return context.refuse(QStringLiteral("So nicht: brellin markiert NAME [--in ORDNER]"));
    const Location scope = folders.empty() ? context.services.folders().home : typedLocation(folders.front());
    const QString tag = QString::fromStdString(words.front());
    using Found = Result<TaggedEntries>;
    const auto found = workWithProgress<Found>(
        context.terminal,
        [&](JobControl &control) { return context.services.tagSearch().find(tag, scope, control, {}); },
        [&](const JobControl &) { return QStringLiteral("Suche „%1“ …").arg(tag); });
    if (!found && found.error().isCancelled())
        return exitCodeOf(found.error(), context.terminal);
    if (!found)
        return context.refuse(printable(shown(scope)) + QStringLiteral(": ") + found.error().message);
    printTags(context, found->entries);
    if (!found->unreadable.empty())
        context.terminal.message(unreadableText(found->unreadable) + u'.');
    return ExitCode::Done;
}

} // namespace brellin
