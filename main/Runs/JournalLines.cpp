#include "Runs/JournalLines.h"

#include "Base/JsonText.h"
#include "Runs/RunJson.h"

namespace brellin::journalLines {

namespace {

/// Room for a step, so that its line does not grow piece by piece.
QByteArray newLine()
{
    QByteArray line;
    line.reserve(512);
    return line;
}

template <class T>
void append(QByteArray &line, const char *key, const T &value)
{
    appendJsonField(line, line.isEmpty() ? '{' : ',', key, value);
}

void append(QByteArray &line, const char *key, const EntryMark &mark)
{
    line.append(",\"").append(key).append("\":");
    appendJsonString(line, mark.ascii());
}

QByteArray closed(QByteArray line)
{
    return line += "}\n";
}

std::optional<EntryMark> markFrom(const QJsonValue &value)
{
    return EntryMark::parse(value.toString());
}

std::optional<Location> locationFrom(const QJsonObject &line, QLatin1StringView key)
{
    const QJsonValue value = line.value(key);
    return value.isString() ? std::optional(locationFromText(value.toString())) : std::nullopt;
}

/// Reads a plan under either key: a new step, or a replaced plan. Rejects step numbers from `lines` on, so that a
/// damaged number cannot allocate without bound.
bool readPlan(const QJsonObject &line, const char *key, qint64 lines, JournalContent &content)
{
    const qint64 number = line.value(QLatin1StringView(key)).toInteger(-1);
    PlannedStep plan;
    const std::optional<EntryMark> entry = markFrom(line.value(QLatin1StringView("state")));
    const std::optional<Location> from = locationFrom(line, QLatin1StringView("from"));
    if (number < 0 || number >= lines || !entry || !from || !readJson(line.value(QLatin1StringView("kind")), plan.kind))
        return false;
    plan.from = *from;
    plan.to = locationFrom(line, QLatin1StringView("to"));
    plan.entry = *entry;
    plan.original = markFrom(line.value(QLatin1StringView("original")));
    // Steps whose plan lines were skipped have nothing to settle.
    while (static_cast<qint64>(content.steps.size()) <= number)
        content.steps.push_back({.plan = {}, .temporary = {}, .copied = {}, .done = {}, .failed = true});
    content.steps[static_cast<std::size_t>(number)] = {.plan = plan, .temporary = {}, .copied = {}, .done = {}};
    return true;
}

/// The step that a line with this key refers to.
JournalledStep *stepOf(const QJsonObject &line, const char *key, JournalContent &content)
{
    const qint64 number = line.value(QLatin1StringView(key)).toInteger(-1);
    const bool known = number >= 0 && number < static_cast<qint64>(content.steps.size());
    return known ? &content.steps[static_cast<std::size_t>(number)] : nullptr;
}

bool readReserve(const QJsonObject &line, JournalledStep &step)
{
    const std::optional<Location> name = locationFrom(line, QLatin1StringView("name"));
    const std::optional<Location> entry = locationFrom(line, QLatin1StringView("entry"));
    const std::optional<EntryMark> mark = markFrom(line.value(QLatin1StringView("state")));
    Instant noted;
    if (!name || !entry || !mark || !readJson(line.value(QLatin1StringView("noted")), noted))
        return false;
    step.reserve = NameReserve{*name, *entry, *mark, noted};
    return true;
}

bool readMark(const QJsonObject &line, JournalContent &content)
{
    if (JournalledStep *const reserving = stepOf(line, "reserving", content))
        return readReserve(line, *reserving);
    if (JournalledStep *const copying = stepOf(line, "copying", content)) {
        copying->temporary = locationFrom(line, QLatin1StringView("temporary"));
        return true;
    }
    if (JournalledStep *const copied = stepOf(line, "copied", content)) {
        copied->copied = markFrom(line.value(QLatin1StringView("state")));
        return copied->copied.has_value();
    }
    if (JournalledStep *const done = stepOf(line, "done", content)) {
        JournalStep result{done->plan.kind, done->plan.from, done->plan.to, {}};
        done->marks = {EntryMark::parse(line.value(QLatin1StringView("toMark")).toString()),
                       EntryMark::parse(line.value(QLatin1StringView("originalMark")).toString())};
        done->done = readJson(line.value(QLatin1StringView("step")), result) ? std::optional(result) : std::nullopt;
        return done->done.has_value();
    }
    if (JournalledStep *const failed = stepOf(line, "failed", content)) {
        failed->failed = true;
        return true;
    }
    return false;
}

bool readLine(const QJsonObject &line, qint64 lines, JournalContent &content)
{
    if (line.contains(QLatin1StringView("run"))) {
        return readJson(line.value(QLatin1StringView("run")), content.run) &&
               readJson(line.value(QLatin1StringView("date")), content.date);
    }
    if (const std::optional<Location> created = locationFrom(line, QLatin1StringView("folder"))) {
        content.folders.push_back(*created);
        return true;
    }
    for (const char *const key : {"plan", "planAgain"}) {
        if (line.contains(QLatin1StringView(key)))
            return readPlan(line, key, lines, content);
    }
    return readMark(line, content);
}

} // namespace

QByteArray head(const QUuid &run, Instant date)
{
    QByteArray line = newLine();
    append(line, "run", run);
    append(line, "date", isoText(date));
    return closed(std::move(line));
}

namespace {

QByteArray planLine(const char *key, std::size_t step, const PlannedStep &planned)
{
    QByteArray line = newLine();
    append(line, key, step);
    append(line, "kind", planned.kind);
    append(line, "from", planned.from);
    if (planned.to)
        append(line, "to", *planned.to);
    append(line, "state", planned.entry);
    if (planned.original)
        append(line, "original", *planned.original);
    return closed(std::move(line));
}

} // namespace

QByteArray plan(std::size_t step, const PlannedStep &planned)
{
    return planLine("plan", step, planned);
}

QByteArray planAgain(std::size_t step, const PlannedStep &planned)
{
    return planLine("planAgain", step, planned);
}

QByteArray folder(const Location &folder)
{
    QByteArray line = newLine();
    append(line, "folder", folder);
    return closed(std::move(line));
}

QByteArray copying(std::size_t step, const Location &temporary)
{
    QByteArray line = newLine();
    append(line, "copying", step);
    append(line, "temporary", temporary);
    return closed(std::move(line));
}

QByteArray reserving(std::size_t step, const NameReserve &reserve)
{
    QByteArray line = newLine();
    append(line, "reserving", step);
    append(line, "name", reserve.name);
    append(line, "entry", reserve.entry);
    append(line, "state", reserve.mark);
    append(line, "noted", isoText(reserve.noted));
    return closed(std::move(line));
}

QByteArray copied(std::size_t step, const EntryMark &copy)
{
    QByteArray line = newLine();
    append(line, "copied", step);
    append(line, "state", copy);
    return closed(std::move(line));
}

QByteArray done(std::size_t step, const JournalStep &result, const StepMarks &marks)
{
    QByteArray line = newLine();
    append(line, "done", step);
    if (marks.to)
        append(line, "toMark", *marks.to);
    if (marks.trashedOriginal)
        append(line, "originalMark", *marks.trashedOriginal);
    append(line, "step", result);
    return closed(std::move(line));
}

QByteArray failed(std::size_t step)
{
    QByteArray line = newLine();
    append(line, "failed", step);
    return closed(std::move(line));
}

JournalContent read(const QByteArray &text)
{
    JournalContent content;
    const qint64 lines = text.count('\n');
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype end = text.indexOf('\n', at);
        if (end < 0)
            break;
        const JsonResult<QJsonValue> line = parseJson(text.mid(at, end - at));
        if (!line || !readLine(line->toObject(), lines, content))
            content.damaged = true;
        at = end + 1;
    }
    return content;
}

} // namespace brellin::journalLines
