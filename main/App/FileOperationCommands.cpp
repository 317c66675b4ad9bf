#include "App/Command.h"
#include "App/TerminalWork.h"
#include "App/TypedLocation.h"
#include "Base/Json.h"
#include "FileOperations/BatchRenameRun.h"
#include "FileOperations/NewEntries.h"
#include "FileOperations/OperationTexts.h"
#include "FileOperations/RecordedAction.h"
#include "FileOperations/RenameFacts.h"
#include "FileOperations/TrashActions.h"
#include "FileOperations/ZipArchive.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <limits>

namespace brellin {

namespace {

std::vector<Location> entriesOf(const CommandContext &context)
{
    std::vector<Location> entries;
    std::ranges::transform(context.arguments.rest(), std::back_inserter(entries), typedLocation);
    return entries;
}

QString progressText(const QString &what, const JobControl &control)
{
    const bool known = control.total() > 0;
    return known ? QStringLiteral("%1  %2 %").arg(what).arg(control.done() * 100 / control.total()) : what;
}

/// Prints old and new locations, as JSON or as text.
void printPairs(CommandContext &context, const std::vector<UserAction::Entry> &entries)
{
    QJsonArray list;
    std::vector<QStringList> rows;
    for (const UserAction::Entry &entry : entries) {
        list.append(
            QJsonObject{{QStringLiteral("from"), toJson(entry.from)}, {QStringLiteral("to"), toJson(entry.to)}});
        rows.push_back({printable(entry.from, context.services.folders().home),
                        QStringLiteral("→ ") + printable(entry.to, context.services.folders().home)});
    }
    if (context.json())
        context.terminal.printJson(list);
    else
        context.terminal.printColumns(rows, 0);
}

ExitCode report(CommandContext &context, const OperationOutcome &outcome)
{
    context.follow(movesOf(outcome.action));
    printPairs(context, outcome.action.entries);
    for (const QString &line : linesOf(outcome.failures))
        context.terminal.message(printable(line));
    if (outcome.cancelled)
        return ExitCode::Cancelled;
    if (outcome.failures.isEmpty())
        return ExitCode::Done;
    return outcome.action.entries.empty() ? ExitCode::NotPossible : ExitCode::Failed;
}

QString textOption(const CommandContext &context, const QString &name, const QString &otherwise = {})
{
    const std::vector<std::string> values = context.arguments.values(name);
    return values.empty() ? otherwise : QString::fromStdString(values.back());
}

Result<int> numberOption(const CommandContext &context, const QString &name, int otherwise)
{
    const QString text = textOption(context, name, QString::number(otherwise));
    bool valid = false;
    const int number = text.toInt(&valid);
    constexpr int most = std::numeric_limits<int>::max() / 2;
    if (!valid || number > most || number < -most)
        return failure(QStringLiteral("Zu „--%1“ gehört eine Zahl, nicht „%2“.").arg(name, printable(text)));
    return number;
}

Result<BatchRenameFields> fieldsOf(const CommandContext &context)
{
    using Mode = BatchRenameFields::Mode;
    constexpr std::array modes{std::pair{u"nummer", Mode::Number}, std::pair{u"ersetzen", Mode::Replace},
                               std::pair{u"ergaenzen", Mode::Add}, std::pair{u"datum", Mode::Date}};
    const QString wanted = asciiWord(textOption(context, QStringLiteral("modus")).toStdString());
    const auto mode =
        std::ranges::find_if(modes, [&](const auto &one) { return wanted == QString::fromUtf16(one.first); });
    if (mode == modes.end())
        return failure(QStringLiteral("Welcher Modus? --modus nummer, ersetzen, ergaenzen oder datum"));
    BatchRenameFields fields;
    fields.mode = mode->second;
    fields.base = textOption(context, QStringLiteral("basis"));
    fields.startNumber = TRY(numberOption(context, QStringLiteral("start"), fields.startNumber));
    fields.digits = TRY(numberOption(context, QStringLiteral("stellen"), fields.digits));
    fields.separator = textOption(context, QStringLiteral("trenner"), fields.separator);
    fields.find = textOption(context, QStringLiteral("suchen"));
    fields.replaceWith = textOption(context, QStringLiteral("ersetzen"));
    fields.prefix = textOption(context, QStringLiteral("vorn"));
    fields.suffix = textOption(context, QStringLiteral("hinten"));
    return fields;
}

/// A planned batch and the attributes of its entries.
struct Prepared {
    BatchRenamePlan plan;
    std::vector<RenamePair> pairs;
};

Prepared prepare(const std::vector<Location> &entries, const BatchRenameFields &fields, Decoder &decoder,
                 JobControl &control)
{
    const Days days = fields.mode == BatchRenameFields::Mode::Date ? Days::Read : Days::Skip;
    const RenameFacts facts = readRenameFacts(entries, days, decoder, control);
    Prepared prepared;
    if (control.cancelled())
        return prepared;
    std::vector<BatchRenameEntry> planned;
    for (std::size_t i = 0; i < entries.size(); ++i)
        planned.push_back({entries[i], days == Days::Read ? facts.days[i] : QDate()});
    prepared.plan = planBatchRename(planned, fields, facts.folders);
    for (std::size_t i = 0; i < entries.size(); ++i)
        prepared.pairs.push_back({entries[i], prepared.plan.rows[i].to, facts.marks[i]});
    return prepared;
}

ExitCode printPlan(CommandContext &context, const BatchRenamePlan &plan)
{
    std::vector<UserAction::Entry> entries;
    for (const BatchRenameRow &row : plan.rows) {
        if (row.changes())
            entries.push_back({row.from, row.to, {}});
    }
    printPairs(context, entries);
    return ExitCode::Done;
}

/// Why these entries must not be changed or created; nullopt if they may.
std::optional<QString> systemRefusal(const CommandContext &context, const std::vector<Location> &entries)
{
    for (const Location &entry : entries) {
        if (!context.services.mayChange(entry))
            return EntryFailure{entry, {operationTexts::systemRefusal(), {}}}.line();
    }
    return std::nullopt;
}

std::optional<QString> missing(const std::vector<Location> &entries)
{
    for (const Location &entry : entries) {
        if (const Result<FileAttributes> there = readAttributes(entry); !there)
            return EntryFailure{entry, there.error()}.line();
    }
    return std::nullopt;
}

} // namespace

ExitCode runRenameCommand(CommandContext &context)
{
    const std::vector<Location> entries = entriesOf(context);
    const Result<BatchRenameFields> fields = fieldsOf(context);
    if (!fields)
        return context.refuse(fields.error().message);
    if (entries.empty())
        return context.refuse(QStringLiteral("Welche Dateien? brellin umbenennen --modus … DATEI…"));
    if (const std::optional<QString> why = missing(entries))
        return context.refuse(printable(*why));
    if (const std::optional<QString> why = systemRefusal(context, entries))
        return context.refuse(printable(*why));
    Decoder &decoder = context.services.decoder();
    const auto prepared = workWithProgress<Prepared>(
        context.terminal, [&](JobControl &control) { return prepare(entries, *fields, decoder, control); },
        [](const JobControl &control) { return progressText(QStringLiteral("Lese Namen und Daten"), control); });
    if (prepared.pairs.empty())
        return ExitCode::Cancelled;
    if (prepared.plan.error)
        return context.refuse(printable(*prepared.plan.error));
    if (context.arguments.has(QStringLiteral("probelauf")))
        return printPlan(context, prepared.plan);
    const auto outcome = workWithProgress<BatchRenameOutcome>(
        context.terminal,
        [&](JobControl &control) {
            return renameBatchRecorded(prepared.pairs, context.services.files(), context.services.renameLogs(), control,
                                       &context.services.records(), QUuid::createUuid());
        },
        [](const JobControl &control) { return progressText(QStringLiteral("Benenne um"), control); });
    context.follow(movesOf(UserAction{UserAction::Kind::Rename, outcome.done}));
    for (const Location &place : outcome.notPutBack)
        context.terminal.message(QStringLiteral("Nicht zurückbenannt: ") +
                                 printable(place, context.services.folders().home));
    if (outcome.failure) {
        context.terminal.message(printable(operationTexts::renameStopped(*outcome.failure)));
        return outcome.failure->isCancelled() ? ExitCode::Cancelled
               : outcome.notPutBack.empty()   ? ExitCode::NotPossible
                                              : ExitCode::Failed;
    }
    printPairs(context, outcome.done);
    return ExitCode::Done;
}

ExitCode runTrashCommand(CommandContext &context)
{
    const std::vector<Location> entries = entriesOf(context);
    if (entries.empty())
        return context.refuse(QStringLiteral("Was? brellin papierkorb DATEI…"));
    if (const std::optional<QString> why = systemRefusal(context, entries))
        return context.refuse(printable(*why));
    return report(
        context,
        workWithProgress<OperationOutcome>(
            context.terminal,
            recorded(&context.services.records(), {StepKind::Trash, entries, {}},
                     [&](JobControl &control) { return putInTrash(entries, context.services.trash(), control); }),
            [](const JobControl &control) { return progressText(QStringLiteral("Lege in den Papierkorb"), control); }));
}

ExitCode runZipCommand(CommandContext &context)
{
    const std::vector<Location> entries = entriesOf(context);
    if (entries.empty())
        return context.refuse(QStringLiteral("Was? brellin zip DATEI…"));
    if (const std::optional<QString> why = missing(entries))
        return context.refuse(printable(*why));
    if (const std::optional<QString> why = systemRefusal(context, {entries.front()}))
        return context.refuse(printable(*why));
    const auto made = workWithProgress<Result<Packed>>(
        context.terminal,
        [&](JobControl &control) {
            const Location folder = entries.front().parent_path();
            OpenStep step = context.services.records().begin(StepKind::Archive, {{{}, folder / zipName(entries)}});
            Result<Packed> packed = compress(entries, folder, context.services.files(), context.services.processes(),
                                             control, context.services.archiveLogs());
            if (packed)
                step.settle(stepEntries({recordOfMade({}, packed->place)}));
            return packed;
        },
        [](const JobControl &control) { return progressText(QStringLiteral("Komprimiere"), control); });
    if (!made) {
        context.terminal.message(printable(made.error().message));
        return made.error().isCancelled() ? ExitCode::Cancelled : ExitCode::NotPossible;
    }
    OperationOutcome outcome;
    outcome.action.kind = StepKind::Archive;
    for (const Location &entry : entries)
        outcome.action.entries.push_back({entry, made->place, {}});
    for (const QString &note : made->notes)
        outcome.failures << EntryFailure{{}, {note, {}}};
    return report(context, outcome);
}

ExitCode runAliasCommand(CommandContext &context)
{
    const std::vector<Location> entries = entriesOf(context);
    const std::vector<std::string> folders = context.arguments.values(QStringLiteral("in"));
    if (entries.empty() || folders.size() > 1)
        return context.refuse(QStringLiteral("So nicht: brellin verknuepfung DATEI… [--in ORDNER]"));
    const std::vector<Location> made = folders.empty() ? entries : std::vector{typedLocation(folders.front()) / "Neu"};
    if (const std::optional<QString> why = systemRefusal(context, made))
        return context.refuse(printable(*why));
    const OperationWork make = [&](JobControl &) {
        OperationOutcome all;
        all.action.kind = StepKind::Alias;
        for (const Location &entry : entries) {
            const OperationOutcome one =
                makeAliases({entry}, folders.empty() ? entry.parent_path() : typedLocation(folders[0]));
            std::ranges::copy(one.action.entries, std::back_inserter(all.action.entries));
            all.failures << one.failures;
        }
        return all;
    };
    return report(context, workWithProgress<OperationOutcome>(
                               context.terminal, recorded(&context.services.records(), {StepKind::Alias, {}, {}}, make),
                               [](const JobControl &) { return QStringLiteral("Lege Verknüpfungen an"); }));
}

} // namespace brellin
