#include "Agent/RulesFile.h"

#include "Agent/AgentJson.h"

#include <QJsonDocument>
#include <QSet>

namespace brellin {

namespace {

/// "Regel 3 („Rechnungen“): Feld „action“: …"
QString sentence(qsizetype index, const QJsonValue &rule, const JsonError &error)
{
    const QString name = rule[QLatin1StringView("name")].toString();
    const QString which = QStringLiteral("Regel %1").arg(index + 1);
    return (name.isEmpty() ? which : which + u" („"_qs + name + u"“)"_qs) + u": "_qs + error.sentence();
}

/// Lists and references know a rule by its id; one that was copied by hand gets its own.
void makeUnique(QUuid &id, QSet<QUuid> &taken)
{
    if (taken.contains(id))
        id = QUuid::createUuid();
    taken.insert(id);
}

} // namespace

Result<std::vector<CleanupRule>> readRules(const QByteArray &json)
{
    const JsonResult<QJsonValue> list = parseJson(json.startsWith("\xEF\xBB\xBF") ? json.mid(3) : json);
    if (!list)
        return failure(u"Die Regeln sind nicht lesbar: "_qs + list.error().sentence());
    if (!list->isArray())
        return failure(u"Die Regeln sind nicht lesbar: hier gehört eine Liste hin."_qs);
    const QJsonArray array = list->toArray();
    std::vector<CleanupRule> rules;
    rules.reserve(static_cast<std::size_t>(array.size()));
    QSet<QUuid> taken;
    for (qsizetype i = 0; i < array.size(); ++i) {
        CleanupRule &rule = rules.emplace_back();
        if (const JsonResult<void> read = readJson(array.at(i), rule); !read)
            return failure(sentence(i, array.at(i), read.error()));
        makeUnique(rule.id, taken);
        for (RuleCondition &condition : rule.conditions)
            makeUnique(condition.id, taken);
    }
    return rules;
}

QByteArray writeRules(const std::vector<CleanupRule> &rules)
{
    return QJsonDocument(toJson(rules).toArray()).toJson(QJsonDocument::Indented);
}

} // namespace brellin
