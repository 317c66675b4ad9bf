#include "Agent/Rules/ExampleRules.h"

#include <algorithm>

namespace brellin {

namespace {

const QString aiRuleName = QStringLiteral("Dokumente mit KI einsortieren");
const QString firstAiRuleName = QStringLiteral("Dokumente aus Downloads mit KI einsortieren");

RuleCondition condition(ConditionKind kind, const QString &value)
{
    return {.id = QUuid::createUuid(), .kind = kind, .value = value};
}

RuleCondition name(const QString &parts)
{
    return condition(ConditionKind::NameContains, parts);
}

RuleCondition extension(const QString &parts)
{
    return condition(ConditionKind::ExtensionIs, parts);
}

RuleCondition category(const QString &word)
{
    return condition(ConditionKind::Category, word);
}

RuleCondition olderThan(const QString &days)
{
    return condition(ConditionKind::OlderThanDays, days);
}

CleanupRule example(const QString &ruleName, const QString &source, std::vector<RuleCondition> conditions,
                    RuleAction action, const QString &target)
{
    CleanupRule rule;
    rule.name = ruleName;
    rule.sourcePath = source;
    rule.conditions = std::move(conditions);
    rule.action = action;
    rule.targetPath = target;
    return rule;
}

bool isSameExample(const QString &a, const QString &b)
{
    const auto current = [](const QString &ruleName) { return ruleName == firstAiRuleName ? aiRuleName : ruleName; };
    return current(a) == current(b);
}

} // namespace

std::vector<CleanupRule> exampleRules(const KnownFolders &folders)
{
    const auto path = [&](StandardFolder which) { return textOf(folders.dir(which)); };
    const QString desktop = path(StandardFolder::Desktop);
    const QString documents = path(StandardFolder::Documents);
    const QString downloads = path(StandardFolder::Downloads);
    const QString movies = path(StandardFolder::Movies);
    const QString pictures = path(StandardFolder::Pictures);
    const auto move = [](const QString &ruleName, const QString &source, std::vector<RuleCondition> conditions,
                         const QString &target) {
        return example(ruleName, source, std::move(conditions), RuleAction::Move, target);
    };
    // Specific rules before general ones: the first match takes the file.
    return {
        move(u"Bildschirmfotos vom Schreibtisch"_qs, desktop, {name(u"Bildschirmfoto, Screenshot"_qs)},
             pictures + u"/Bildschirmfotos/{Jahr}-{Monat}"_qs),
        move(u"Bildschirmaufnahmen (Videos) sammeln"_qs, desktop,
             {name(u"Bildschirmaufnahme, ScreenRecording, Screen Recording"_qs)},
             movies + u"/Bildschirmaufnahmen/{Jahr}-{Monat}"_qs),
        move(u"Bilder aus Downloads nach Monat"_qs, downloads, {category(u"Bilder"_qs), olderThan(u"3"_qs)},
             pictures + u"/Aus Downloads/{Jahr}-{Monat}"_qs),
        move(u"Videos aus Downloads"_qs, downloads, {category(u"Videos"_qs), olderThan(u"3"_qs)},
             movies + u"/Aus Downloads/{Jahr}"_qs),
        move(u"Rechnungen (PDF) ablegen"_qs, downloads,
             {extension(u"pdf"_qs), name(u"Rechnung, Invoice, Beleg, Quittung"_qs)},
             documents + u"/Rechnungen/{Jahr}"_qs),
        move(u"Zahlungsbelege (PDF) ablegen"_qs, downloads,
             {extension(u"pdf"_qs),
              name(u"Zahlung, Quittung, Kontoauszug, PayPal, Receipt, Überweisung, Lastschrift"_qs)},
             documents + u"/Zahlungsbelege/{Jahr}"_qs),
        example(u"Installationsdateien (.dmg/.pkg) nach 14 Tagen weg"_qs, downloads,
                {extension(u"dmg, pkg"_qs), olderThan(u"14"_qs)}, RuleAction::Trash, {}),
        move(u"ZIP-Archive aus Downloads ablegen (30 Tage)"_qs, downloads,
             {category(u"Archive"_qs), olderThan(u"30"_qs)}, documents + u"/Archiv/{Jahr}"_qs),
        move(u"Alte Downloads archivieren (90 Tage)"_qs, downloads, {olderThan(u"90"_qs)},
             documents + u"/Archiv/{Jahr}"_qs),
        example(firstAiRuleName, downloads, {category(u"Dokumente"_qs), olderThan(u"2"_qs)}, RuleAction::AiSort,
                documents),
    };
}

std::vector<CleanupRule> withMissingExampleRules(std::vector<CleanupRule> rules, const KnownFolders &folders)
{
    for (CleanupRule &wanted : exampleRules(folders)) {
        if (std::ranges::none_of(rules, [&](const CleanupRule &rule) { return isSameExample(rule.name, wanted.name); }))
            rules.push_back(std::move(wanted));
    }
    return rules;
}

std::vector<CleanupRule> upgradedRules(std::vector<CleanupRule> rules, const KnownFolders &folders)
{
    rules = withMissingExampleRules(std::move(rules), folders);
    for (CleanupRule &rule : rules) {
        if (rule.name == firstAiRuleName)
            rule.name = aiRuleName;
    }
    return rules;
}

} // namespace brellin
