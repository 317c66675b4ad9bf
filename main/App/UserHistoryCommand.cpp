#include "App/UserHistoryCommand.h"

#include "Base/German.h"
#include "Base/Json.h"
#include "History/EntryTrail.h"
#include "History/HistoryTexts.h"

#include <algorithm>
#include <iterator>

namespace brellin {

template <>
struct JsonWords<HistoryStep::By> {
    static constexpr std::array words{std::pair{HistoryStep::By::User, u"user"},
                                      std::pair{HistoryStep::By::Agent, u"agent"}};
};

template <>
struct JsonWords<HistoryKind> {
    static constexpr std::array words{
        std::pair{HistoryKind::Copied, u"copy"},     std::pair{HistoryKind::Moved, u"move"},
        std::pair{HistoryKind::Renamed, u"rename"},  std::pair{HistoryKind::Trashed, u"trash"},
        std::pair{HistoryKind::Made, u"new"},        std::pair{HistoryKind::Unpacked, u"unpack"},
        std::pair{HistoryKind::Permitted, u"rights"}};
};

namespace {

/// Settles what a crash cut short first, so that it is told as well.
std::vector<HistoryStep> wholeHistory(CommandContext &context)
{
    Services &services = context.services;
    services.records().settle(services.trash());
    const KeptSteps kept = services.records().read();
    if (!kept.condition.isWhole())
        context.terminal.message(printable(kept.condition.text()));
    const RunHistory runs(services.settings());
    return historyOf(kept.steps, runs.runs(), runs);
}

QJsonObject entryAnswer(const HistoryEntry &entry)
{
    return {{QStringLiteral("kind"), toJson(historyKind(entry.kind))},
            {QStringLiteral("from"), toJson(entry.entry.from)},
            {QStringLiteral("to"), toJson(entry.entry.to)},
            {QStringLiteral("takenBack"), entry.entry.takenBack}};
}

QJsonObject stepAnswer(HistoryStep::By by, const QUuid &id, Instant date, const QJsonArray &entries)
{
    return {{QStringLiteral("id"), toJson(id)},
            {QStringLiteral("by"), toJson(by)},
            {QStringLiteral("date"), toJson(date, JsonDates::Iso)},
            {QStringLiteral("entries"), entries}};
}

QJsonObject stepAnswer(const HistoryStep &step)
{
    QJsonArray entries;
    for (const HistoryEntry &entry : step.entries)
        entries.append(entryAnswer(entry));
    QJsonObject answer = stepAnswer(step.by, step.id, step.date, entries);
    answer.insert(QStringLiteral("takenBack"), step.takenBack);
    return answer;
}

QStringList historyRow(const HistoryStep &step, const KnownFolders &folders)
{
    QString way;
    if (step.entries.size() == 1) {
        const StepEntry &entry = step.entries.front().entry;
        way = historyTexts::folderText(entry.from.parent_path(), folders);
        if (const QString to = historyTexts::folderText(entry.to.parent_path(), folders); to != way)
            way += (way.isEmpty() ? QStringLiteral("in ") : QStringLiteral(" → ")) + to;
    }
    return {longDateTime(step.date), printable(historyTexts::sentence(step)), printable(way),
            step.takenBack ? QStringLiteral("rückgängig gemacht") : QString()};
}

HistoryStep asStep(const EntryTrail::Step &step)
{
    return {HistoryStep::By::User, step.id, step.date, step.entry.entry.takenBack, {step.entry}};
}

QJsonArray trailAnswer(const EntryTrail &trail, const std::optional<Location> &place)
{
    QJsonArray steps;
    for (const EntryTrail::Step &step : trail.steps) {
        QJsonObject answer = stepAnswer(step.by, step.id, step.date, {entryAnswer(step.entry)});
        answer.insert(QStringLiteral("takenBack"), step.entry.entry.takenBack);
        answer.insert(QStringLiteral("now"), place ? toJson(*place) : QJsonValue(QJsonValue::Null));
        steps.append(answer);
    }
    return steps;
}

} // namespace

ExitCode showWholeHistory(CommandContext &context)
{
    QJsonArray json;
    std::vector<QStringList> rows;
    for (const HistoryStep &step : wholeHistory(context)) {
        json.append(stepAnswer(step));
        rows.push_back(historyRow(step, context.services.folders()));
    }
    if (context.json())
        context.terminal.printJson(json);
    else if (rows.empty())
        context.terminal.print(QStringLiteral("Noch nichts geschehen"));
    else
        context.terminal.printColumns(rows, 0);
    return ExitCode::Done;
}

ExitCode searchHistory(CommandContext &context, const QString &name)
{
    const std::vector<EntryTrail> trails = trailsOf(wholeHistory(context), name);
    const Trash &trash = context.services.trash();
    QJsonArray json;
    if (trails.empty() && !context.json())
        context.terminal.print(QStringLiteral("Davon steht nichts im Verlauf."));
    for (const EntryTrail &trail : trails) {
        const std::optional<Location> place = placeNow(trail, trash);
        for (const QJsonValue &step : trailAnswer(trail, place))
            json.append(step);
        if (context.json())
            continue;
        const KnownFolders &folders = context.services.folders();
        context.terminal.print(printable(historyTexts::nowText(trail, place, place && trash.holds(*place), folders)));
        std::vector<QStringList> rows;
        std::ranges::transform(trail.steps, std::back_inserter(rows), [&](const EntryTrail::Step &step) {
            QStringList row = historyRow(asStep(step), folders);
            row.front().prepend(QStringLiteral("  "));
            return row;
        });
        context.terminal.printColumns(rows, 0);
    }
    if (context.json())
        context.terminal.printJson(json);
    return ExitCode::Done;
}

} // namespace brellin
