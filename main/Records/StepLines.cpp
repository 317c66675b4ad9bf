#include "Records/StepLines.h"

#include "Base/Json.h"

#include <QHash>

#include <algorithm>
#include <iterator>
#include <set>

namespace brellin {

namespace {

/// The content of larger folders is not recorded: a million entries would take 11 MB.
constexpr qsizetype mostContentBytes = qsizetype(20'000) * 8;

struct TakenBackLine {
    QUuid step;
    Instant date;
    std::vector<Location> places;
};

struct StepLine {
    std::optional<RecordedStep> step;
    std::optional<TakenBackLine> takenBack;
    std::optional<RecordedStep> takingBack;

    bool isKnown() const { return step || takenBack || takingBack; }
};

} // namespace

template <>
struct JsonWords<StepKind> {
    static constexpr std::array words{
        std::pair{StepKind::Rename, u"rename"},   std::pair{StepKind::BatchRename, u"batchRename"},
        std::pair{StepKind::Move, u"move"},       std::pair{StepKind::Copy, u"copy"},
        std::pair{StepKind::Trash, u"trash"},     std::pair{StepKind::NewFolder, u"newFolder"},
        std::pair{StepKind::NewFile, u"newFile"}, std::pair{StepKind::Alias, u"alias"},
        std::pair{StepKind::Archive, u"archive"}, std::pair{StepKind::Unpack, u"unpack"},
        std::pair{StepKind::Rights, u"rights"}};
};

static QJsonValue toJson(const EntryMark &mark, JsonDates)
{
    return mark.text();
}

static JsonResult<void> readJson(const QJsonValue &json, EntryMark &mark)
{
    const std::optional<EntryMark> read = EntryMark::parse(json.toString());
    if (!read)
        return std::unexpected(JsonError{{}, QStringLiteral("das ist kein Kennzeichen eines Eintrags")});
    mark = *read;
    return {};
}

static QJsonValue toJson(const std::shared_ptr<const TreeMark> &content, JsonDates)
{
    const QByteArray bytes = content ? content->bytes() : QByteArray();
    const bool stored = content && bytes.size() <= mostContentBytes;
    return stored ? QJsonValue(QString::fromLatin1(bytes.toBase64())) : QJsonValue(QJsonValue::Null);
}

static JsonResult<void> readJson(const QJsonValue &json, std::shared_ptr<const TreeMark> &content)
{
    const std::optional<TreeMark> read = TreeMark::fromBytes(QByteArray::fromBase64(json.toString().toLatin1()));
    if (!json.isString() || !read)
        return std::unexpected(JsonError{{}, QStringLiteral("das ist kein Inhalt eines Ordners")});
    content = std::make_shared<const TreeMark>(*read);
    return {};
}

/// Numbers as text, like those of an `EntryMark`; attributes in Base64, since their values are bytes.
static QJsonValue toJson(const FolderFacts &facts, JsonDates)
{
    QJsonObject attributes;
    for (const auto &[name, value] : facts.attributes)
        attributes.insert(QString::fromStdString(name),
                          QString::fromLatin1(QByteArray::fromStdString(value).toBase64()));
    const QString numbers = QStringLiteral("%1:%2:%3:%4")
                                .arg(facts.mode)
                                .arg(facts.owner)
                                .arg(facts.group)
                                .arg(facts.modified.time_since_epoch().count());
    return QJsonObject{{QStringLiteral("numbers"), numbers}, {QStringLiteral("attributes"), attributes}};
}

static JsonResult<void> readJson(const QJsonValue &json, FolderFacts &facts)
{
    const QStringList numbers = json[QStringLiteral("numbers")].toString().split(u':');
    if (numbers.size() != 4)
        return std::unexpected(JsonError{{}, QStringLiteral("das sind keine Angaben zu einem Ordner")});
    facts.mode = numbers[0].toUInt();
    facts.owner = numbers[1].toUInt();
    facts.group = numbers[2].toUInt();
    facts.modified = Instant(std::chrono::nanoseconds(numbers[3].toLongLong()));
    const QJsonObject attributes = json[QStringLiteral("attributes")].toObject();
    for (auto one = attributes.begin(); one != attributes.end(); ++one)
        facts.attributes[one.key().toStdString()] =
            QByteArray::fromBase64(one.value().toString().toLatin1()).toStdString();
    return {};
}

template <>
struct JsonTable<EntryRights> {
    static constexpr std::tuple fields{field("mode", &EntryRights::mode), field("owner", &EntryRights::owner),
                                       field("group", &EntryRights::group)};
};

template <>
struct JsonTable<RightsStep> {
    static constexpr std::tuple fields{field("before", &RightsStep::before), field("now", &RightsStep::now)};
};

template <>
struct JsonTable<StepEntry> {
    static constexpr std::tuple fields{
        field("from", &StepEntry::from),         field("to", &StepEntry::to),
        field("was", &StepEntry::was),           field("now", &StepEntry::now),
        field("replaced", &StepEntry::replaced), field("replacedMark", &StepEntry::replacedMark),
        field("content", &StepEntry::content),   field("takenBack", &StepEntry::takenBack),
        field("merged", &StepEntry::merged),     field("rights", &StepEntry::rights)};
};

template <>
struct JsonTable<RecordedStep> {
    static constexpr std::tuple fields{field("id", &RecordedStep::id), field("date", &RecordedStep::date),
                                       field("kind", &RecordedStep::kind), field("entries", &RecordedStep::entries),
                                       field("takenBack", &RecordedStep::takenBack)};
};

template <>
struct JsonTable<TakenBackLine> {
    static constexpr std::tuple fields{field("step", &TakenBackLine::step), field("date", &TakenBackLine::date),
                                       field("places", &TakenBackLine::places)};
};

template <>
struct JsonTable<StepLine> {
    static constexpr std::tuple fields{field("step", &StepLine::step), field("takenBack", &StepLine::takenBack),
                                       field("takingBack", &StepLine::takingBack)};
};

namespace stepLines {

namespace {

QByteArray lineOf(const StepLine &line)
{
    return jsonText(toJson(line)) + '\n';
}

JsonResult<StepLine> lineFrom(const QByteArray &text)
{
    const JsonResult<QJsonValue> json = parseJson(text);
    if (!json)
        return std::unexpected(json.error());
    StepLine line;
    if (const JsonResult<void> read = readJson(*json, line); !read)
        return std::unexpected(read.error());
    if (!line.isKnown())
        return std::unexpected(JsonError{{}, QStringLiteral("das ist kein Schritt")});
    return line;
}

void takeBack(RecordedStep &step, const TakenBackLine &back)
{
    const std::set<Location> places(back.places.begin(), back.places.end());
    for (StepEntry &entry : step.entries)
        entry.takenBack = entry.takenBack || places.contains(entry.to);
    if (std::ranges::all_of(step.entries, &StepEntry::takenBack))
        step.takenBack = back.date;
}

/// Combines lines as they are read.
class Reading {
public:
    void take(StepLine line)
    {
        if (line.step)
            add(*std::move(line.step));
        if (line.takenBack) {
            if (const auto known = m_places.constFind(line.takenBack->step); known != m_places.constEnd())
                takeBack(m_content.steps[*known], *line.takenBack);
        }
        if (line.takingBack)
            m_content.takingBack.push_back(*std::move(line.takingBack));
    }

    void lose(const QString &why) { m_content.lost << why; }

    Content content() &&
    {
        std::ranges::stable_sort(m_content.steps, {}, &RecordedStep::date);
        return std::move(m_content);
    }

private:
    void add(RecordedStep step)
    {
        const auto known = m_places.constFind(step.id);
        if (known == m_places.constEnd()) {
            m_places.insert(step.id, m_content.steps.size());
            m_content.steps.push_back(std::move(step));
            return;
        }
        // After a crash right after writing a line, its note is settled to the same line.
        RecordedStep &earlier = m_content.steps[*known];
        for (StepEntry &entry : step.entries) {
            const auto same = [&](const StepEntry &one) { return one.from == entry.from && one.to == entry.to; };
            if (std::ranges::any_of(earlier.entries, same))
                continue;
            earlier.takenBack.reset();
            earlier.entries.push_back(std::move(entry));
        }
    }

    Content m_content;
    QHash<QUuid, std::size_t> m_places;
};

} // namespace

QByteArray done(const RecordedStep &step)
{
    return lineOf({step, {}, {}});
}

QByteArray takenBack(const QUuid &step, Instant date, const std::vector<Location> &places)
{
    return lineOf({{}, TakenBackLine{step, date, places}, {}});
}

QByteArray takingBack(const RecordedStep &step)
{
    return lineOf({{}, {}, step});
}

Content read(const QByteArray &text)
{
    Reading reading;
    for (qsizetype at = 0, line = 1;; ++line) {
        const qsizetype end = text.indexOf('\n', at);
        if (end < 0)
            break;
        if (JsonResult<StepLine> one = lineFrom(text.mid(at, end - at)))
            reading.take(*std::move(one));
        else
            reading.lose(QStringLiteral("Zeile %1: %2").arg(line).arg(one.error().sentence()));
        at = end + 1;
    }
    return std::move(reading).content();
}

} // namespace stepLines

} // namespace brellin
