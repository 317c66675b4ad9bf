#include "App/Command.h"
#include "App/TerminalWork.h"
#include "App/TypedLocation.h"
#include "Base/German.h"
#include "Base/Json.h"
#include "Features/FolderCount.h"

namespace brellin {

namespace {

struct CountedFolder {
    Location path;
    FolderCount count;
};

QJsonArray answerOf(const std::vector<CountedFolder> &folders)
{
    QJsonArray list;
    for (const CountedFolder &folder : folders)
        list.append(QJsonObject{{QStringLiteral("path"), toJson(folder.path)},
                                {QStringLiteral("bytes"), static_cast<qint64>(folder.count.bytes)},
                                {QStringLiteral("files"), static_cast<qint64>(folder.count.files)}});
    return list;
}

QString files(std::int64_t count)
{
    return counted(count, QStringLiteral("Datei"), QStringLiteral("Dateien"));
}

Result<FolderCount> count(Terminal &terminal, const Location &folder)
{
    return workWithProgress<Result<FolderCount>>(
        terminal, [folder](JobControl &control) { return countFolder(folder, &control); },
        [folder](const JobControl &) { return QStringLiteral("Zähle „%1“ …").arg(shownName(folder)); });
}

} // namespace

ExitCode runSizeCommand(CommandContext &context)
{
    if (context.arguments.rest().empty())
        return context.refuse(QStringLiteral("Welche Ordner? brellin groesse ORDNER…"));
    std::vector<CountedFolder> folders;
    bool complete = true;
    for (const std::string &word : context.arguments.rest()) {
        const Location path = typedLocation(word);
        const Result<FolderCount> folder = count(context.terminal, path);
        if (!folder && folder.error().isCancelled()) {
            context.terminal.message(folder.error().message);
            return ExitCode::Cancelled;
        }
        complete = complete && folder && folder->unreadable == 0;
        if (!folder)
            context.terminal.message(printable(shown(Location(word))) + QStringLiteral(": ") + folder.error().message);
        else if (folder->unreadable > 0)
            context.terminal.message(
                QStringLiteral("%1: Nicht alles konnte gelesen werden (%2).")
                    .arg(printable(shown(Location(word))),
                         counted(folder->unreadable, QStringLiteral("Ordner"), QStringLiteral("Ordner"))));
        if (folder)
            folders.push_back({path, *folder});
    }
    if (context.json()) {
        context.terminal.printJson(answerOf(folders));
    } else {
        std::vector<QStringList> rows;
        for (const CountedFolder &one : folders)
            rows.push_back({sizeText(one.count.bytes), files(one.count.files),
                            printable(one.path, context.services.folders().home)});
        context.terminal.printColumns(rows, 0);
    }
    return complete ? ExitCode::Done : folders.empty() ? ExitCode::NotPossible : ExitCode::Failed;
}

} // namespace brellin
