#include "Runs/JournalLines.h"

#include "Runs/RunJson.h"

#include <algorithm>

namespace brellin::journalLines {

namespace {

/// Written by hand: ten times faster than QJsonDocument, and 10,000 steps make 20,000 lines.
void appendText(QByteArray &line, const QString &text)
{
    const auto isSpecial = [](char c) { return c == '"' || c == '\\' || static_cast<unsigned char>(c) < 0x20; };
    const QByteArray bytes = text.toUtf8();
    line += '"';
    for (auto plain = bytes.begin(); plain != bytes.end();) {
        const auto special = std::find_if(plain, bytes.end(), isSpecial);
        line.append(plain, special - plain);
        if (special == bytes.end())
            break;
        if (static_cast<unsigned char>(*special) < 0x20)
            line += "\\u00" + QByteArray::number(*special, 16).rightJustified(2, '0');
        else
            line.append('\\').append(*special);
        plain = special + 1;
    }
    line += '"';
}

void append(QByteArray &line, const char *key, const QString &value)
{
    line.append(line.isEmpty() ? "{\"" : ",\"").append(key).append("\":");
    appendText(line, value);
}

void append(QByteArray &line, const char *key, const Location &value)
{
    append(line, key, textOf(value));
}

void append(QByteArray &line, const char *key, std::size_t number)
{
    line.append(line.isEmpty() ? "{\"" : ",\"").append(key).append("\":").append(QByteArray::number(number));
}

void append(QByteArray &line, const char *key, const EntryMark &mark)
{
    append(line, key, mark.text());
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
    QByteArray line;
    append(line, "run", run.toString(QUuid::WithoutBraces).toUpper());
    append(line, "date", isoText(date));
    return closed(line);
}

namespace {

QByteArray planLine(const char *key, std::size_t step, const PlannedStep &planned)
{
    QByteArray line;
    append(line, key, step);
    append(line, "kind", toJson(planned.kind).toString());
    append(line, "from", planned.from);
    if (planned.to)
        append(line, "to", *planned.to);
    append(line, "state", planned.entry);
    if (planned.original)
        append(line, "original", *planned.original);
    return closed(line);
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
    QByteArray line;
    append(line, "folder", folder);
    return closed(line);
}

QByteArray copying(std::size_t step, const Location &temporary)
{
    QByteArray line;
    append(line, "copying", step);
    append(line, "temporary", temporary);
    return closed(line);
}

QByteArray reserving(std::size_t step, const NameReserve &reserve)
{
    QByteArray line;
    append(line, "reserving", step);
    append(line, "name", reserve.name);
    append(line, "entry", reserve.entry);
    append(line, "state", reserve.mark);
    append(line, "noted", isoText(reserve.noted));
    return closed(line);
}

QByteArray copied(std::size_t step, const EntryMark &copy)
{
    QByteArray line;
    append(line, "copied", step);
    append(line, "state", copy);
    return closed(line);
}

QByteArray done(std::size_t step, const JournalStep &result, const StepMarks &marks)
{
    QByteArray record;
    append(record, "kind", toJson(result.kind).toString());
    append(record, "from", result.from);
    if (result.to)
        append(record, "to", *result.to);
    if (result.trashedOriginal)
        append(record, "trashedOriginal", *result.trashedOriginal);
    QByteArray line;
    append(line, "done", step);
    if (marks.to)
        append(line, "toMark", marks.to->text());
    if (marks.trashedOriginal)
        append(line, "originalMark", marks.trashedOriginal->text());
    return closed(line + ",\"step\":" + record + '}');
}

QByteArray failed(std::size_t step)
{
    QByteArray line;
    append(line, "failed", step);
    return closed(line);
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
