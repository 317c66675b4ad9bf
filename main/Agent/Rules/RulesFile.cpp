#include "Agent/Rules/RulesFile.h"

#include "Agent/Rules/RuleJson.h"
#include "Disk/FileAttributes.h"
#include "Guard/ProfileJson.h"
#include "Guard/ProtectedPath.h"

#include <QJsonDocument>
#include <QSet>

namespace brellin {

namespace {

/// "Regel 3 („Rechnungen“): Feld „action“: …"
QString sentence(const QString &noun, qsizetype index, const QJsonValue &record, const JsonError &error)
{
    const QString name = record[QLatin1StringView("name")].toString();
    const QString which = noun + u" %1"_qs.arg(index + 1);
    return (name.isEmpty() ? which : which + u" („"_qs + name + u"“)"_qs) + u": "_qs + error.sentence();
}

/// Rules are referenced by id; a copy made by hand gets a new one.
void makeUnique(QUuid &id, QSet<QUuid> &taken)
{
    if (taken.contains(id))
        id = QUuid::createUuid();
    taken.insert(id);
}

/// Reads a list of records, all or none; `plural` and `noun` name them in messages.
template <class Record>
Result<std::vector<Record>> readRecords(const QByteArray &json, const QString &plural, const QString &noun)
{
    const QString unreadable = u"Die %1 sind nicht lesbar: "_qs.arg(plural);
    const JsonResult<QJsonValue> list = parseJson(json.startsWith("\xEF\xBB\xBF") ? json.mid(3) : json);
    if (!list)
        return failure(unreadable + list.error().sentence());
    if (!list->isArray())
        return failure(unreadable + u"hier gehört eine Liste hin."_qs);
    const QJsonArray array = list->toArray();
    std::vector<Record> records;
    records.reserve(static_cast<std::size_t>(array.size()));
    QSet<QUuid> taken;
    for (qsizetype i = 0; i < array.size(); ++i) {
        Record &record = records.emplace_back();
        if (const JsonResult<void> read = readJson(array.at(i), record); !read)
            return failure(sentence(noun, i, array.at(i), read.error()));
        if (const JsonResult<void> whole = DecisiveKeys<Record>::check(array.at(i)); !whole)
            return failure(sentence(noun, i, array.at(i), whole.error()));
        makeUnique(record.id, taken);
    }
    return records;
}

template <class Record>
QByteArray writeRecords(const std::vector<Record> &records)
{
    return QJsonDocument(toJson(records).toArray()).toJson(QJsonDocument::Indented);
}

EdgeBlanks blanksOf(const FolderProfile &profile, const ProtectedEntry &entry)
{
    return entryExists(profile.root() / locationFromText(entry.path)) ? EdgeBlanks::OfTheName : EdgeBlanks::Typed;
}

} // namespace

Result<std::vector<CleanupRule>> readRules(const QByteArray &json)
{
    std::vector<CleanupRule> rules = TRY(readRecords<CleanupRule>(json, u"Regeln"_qs, u"Regel"_qs));
    QSet<QUuid> taken;
    for (CleanupRule &rule : rules) {
        for (RuleCondition &condition : rule.conditions)
            makeUnique(condition.id, taken);
    }
    return rules;
}

QByteArray writeRules(const std::vector<CleanupRule> &rules)
{
    return writeRecords(rules);
}

Result<std::vector<FolderProfile>> readProfiles(const QByteArray &json)
{
    std::vector<FolderProfile> profiles = TRY(readRecords<FolderProfile>(json, u"Profile"_qs, u"Profil"_qs));
    for (qsizetype i = 0; FolderProfile & profile : profiles) {
        ++i;
        for (ProtectedEntry &entry : profile.protectedEntries) {
            Result<QString> path = protectedPath(profile, entry.path, blanksOf(profile, entry));
            if (!path)
                return failure(
                    u"Profil %1 („%2“): Feld „protected“: %3"_qs.arg(i).arg(profile.name, path.error().message));
            entry.path = *std::move(path);
        }
    }
    return profiles;
}

QByteArray writeProfiles(const std::vector<FolderProfile> &profiles)
{
    return writeRecords(profiles);
}

} // namespace brellin
