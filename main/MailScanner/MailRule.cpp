#include "MailScanner/MailRule.h"

#include "Base/CommaList.h"
#include "MailScanner/MailRuleJson.h"

#include <algorithm>

namespace brellin {

namespace {

MailRule defaultRule(const QString &name, MailDocKind kind, const QString &keywords, const QString &senders,
                     const QString &target)
{
    MailRule rule;
    rule.name = name;
    rule.kind = kind;
    rule.keywords = keywords;
    rule.senders = senders;
    rule.target = target;
    rule.exclude = defaultExclude();
    return rule;
}

} // namespace

QString rawValue(MailDocKind kind)
{
    return toJson(kind).toString();
}

QString title(MailDocKind kind)
{
    return kind == MailDocKind::Rechnung ? QStringLiteral("Rechnung") : QStringLiteral("Zahlungsbeleg");
}

QString rawValue(MailArea area)
{
    return toJson(area).toString();
}

QString title(MailArea area)
{
    return area == MailArea::Privat ? QStringLiteral("Privat") : QStringLiteral("Geschäftlich");
}

bool containsWordOf(const QString &words, const QString &text)
{
    const QString searched = folded(text);
    return std::ranges::any_of(commaList(words), [&](const QString &word) { return searched.contains(folded(word)); });
}

bool MailRule::matches(const QString &subject, const QString &sender) const
{
    const bool anyKeyword = !commaList(keywords).isEmpty();
    const bool anySender = !commaList(senders).isEmpty();
    if (!anyKeyword && !anySender)
        return false;
    if (containsWordOf(exclude.value_or(QString()), subject))
        return false;
    return (!anyKeyword || containsWordOf(keywords, subject)) && (!anySender || containsWordOf(senders, sender));
}

QString defaultExclude()
{
    return QStringLiteral(
        "abgelehnt, fehlgeschlagen, declined, failed, Einlieferungsbeleg, Versandbestätigung, Auszahlung, Erinnerung");
}

std::vector<MailRule> defaultRules(const Location &base)
{
    const QString payments = textOf(base / "Zahlungsbelege" / "{Jahr}");
    const QString invoices = textOf(base / "Rechnungen" / "{Jahr}");
    return {defaultRule(u"PayPal-Zahlungen"_qs, MailDocKind::Zahlung, {}, u"paypal"_qs, payments),
            defaultRule(u"Zahlungsbelege"_qs, MailDocKind::Zahlung,
                        u"Zahlungsbeleg, Zahlungsbestätigung, Zahlung erhalten, Zahlung eingegangen, Zahlungseingang, "
                        "Ihre Zahlung, Quittung, Kaufbeleg, Payment receipt, Receipt, Lastschrift, Überweisung, "
                        "Kontoauszug, Your receipt"_qs,
                        {}, payments),
            defaultRule(u"Rechnungen"_qs, MailDocKind::Rechnung,
                        u"Rechnung, Invoice, Rechnungskopie, Gutschrift, Abrechnung, Rechnungsnummer, Beleg, Bill"_qs,
                        {}, invoices)};
}

std::vector<MailRule> upgradedMailRules(const std::vector<MailRule> &old, const Location &base)
{
    std::vector<MailRule> rules = defaultRules(base);
    for (MailRule &rule : rules) {
        const auto kept = std::ranges::find(old, rule.name, &MailRule::name);
        if (kept == old.end())
            continue;
        rule.enabled = kept->enabled;
        rule.automatic = kept->automatic;
        rule.target = kept->target;
    }
    std::vector<MailRule> own = old;
    std::erase_if(
        own, [&](const MailRule &rule) { return std::ranges::find(rules, rule.name, &MailRule::name) != rules.end(); });
    rules.insert(rules.end(), own.begin(), own.end());
    return rules;
}

} // namespace brellin
