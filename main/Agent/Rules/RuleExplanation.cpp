#include "Agent/Rules/RuleExplanation.h"

#include "Agent/Rules/RuleConditions.h"
#include "Base/CommaList.h"
#include "Base/German.h"
#include "Disk/FileAttributes.h"
#include "Guard/PathTexts.h"

#include <algorithm>
#include <cmath>

namespace brellin {

namespace {

using Verdict = ConditionOutcome::Verdict;

const QString unknown = QStringLiteral("unbekannt");

/// "vor 12,5 Tagen", rounded down: 89.97 days must not read as the 90 that a condition requires.
QString ageText(Instant modified, Instant now)
{
    const double days = std::chrono::duration<double>(now - modified).count() / 86400.0;
    if (days < 0)
        return QStringLiteral("ein Datum in der Zukunft");
    const double cut = std::floor(days * 10) / 10;
    const QString number = german().toString(cut, 'f', cut < 100 && cut != std::floor(cut) ? 1 : 0);
    return QStringLiteral("vor ") + number + (cut == 1 ? QStringLiteral(" Tag") : QStringLiteral(" Tagen"));
}

QString foundIn(RuleFile &file, ConditionKind kind, const Location &location, Instant now)
{
    switch (kind) {
    case ConditionKind::NameContains:
        return shownName(location);
    case ConditionKind::ExtensionIs:
        return shown(std::string_view(file.lowerExtension()));
    case ConditionKind::Category:
        return file.category();
    case ConditionKind::OlderThanDays:
        return file.modified() ? ageText(*file.modified(), now) : unknown;
    case ConditionKind::LargerThanMB:
        return file.size() ? sizeText(*file.size()) : unknown;
    }
    return {};
}

bool wantsNumber(ConditionKind kind)
{
    return kind == ConditionKind::OlderThanDays || kind == ConditionKind::LargerThanMB;
}

Verdict verdictOn(const RuleCondition &condition, RuleFile &file, Instant now)
{
    if (wantsNumber(condition.kind) && !conditionNumber(condition.value))
        return Verdict::Unreadable;
    if (!wantsNumber(condition.kind) && commaList(condition.value).isEmpty())
        return Verdict::Ignored;
    return RuleConditions({condition}).hold(file, now) ? Verdict::Holds : Verdict::Fails;
}

/// The sentence for a condition of this kind that fails.
QString contradiction(ConditionKind kind, const QString &found)
{
    switch (kind) {
    case ConditionKind::NameContains:
        return QStringLiteral("die Datei heißt „%1“").arg(found);
    case ConditionKind::ExtensionIs:
        return found.isEmpty() ? QStringLiteral("die Datei hat keine Endung")
                               : QStringLiteral("die Datei hat „%1“").arg(found);
    case ConditionKind::Category:
        return QStringLiteral("die Datei gehört zu „%1“").arg(found);
    case ConditionKind::OlderThanDays:
        return found == unknown ? QStringLiteral("ihr Datum ist nicht zu lesen")
                                : QStringLiteral("zuletzt geändert: %1").arg(found);
    case ConditionKind::LargerThanMB:
        return found == unknown ? QStringLiteral("ihre Größe ist nicht zu lesen")
                                : QStringLiteral("die Datei hat %1").arg(found);
    }
    return {};
}

} // namespace

QString ConditionOutcome::text() const
{
    const QString asked =
        title(condition.kind) + QStringLiteral(" „") + condition.value.trimmed() + QStringLiteral("“");
    switch (verdict) {
    case Verdict::Holds:
        return asked + QStringLiteral(" – passt");
    case Verdict::Ignored:
        return title(condition.kind) + QStringLiteral(" – leer, gilt für alle Dateien");
    case Verdict::Unreadable:
        return asked + QStringLiteral(" – keine Zahl, passt nie");
    case Verdict::Fails:
        break;
    }
    return asked + QStringLiteral(" – ") + contradiction(condition.kind, found);
}

std::vector<ConditionOutcome> conditionOutcomes(const CleanupRule &rule, const Location &file, Instant now)
{
    const Result<FileAttributes> attributes = readAttributes(file);
    const std::string name = file.filename().native();
    RuleFile tested;
    tested.set(name, attributes && attributes->isFile() ? std::optional(attributes->size) : std::nullopt,
               attributes ? std::optional(attributes->modified) : std::nullopt);
    std::vector<ConditionOutcome> outcomes;
    for (const RuleCondition &condition : rule.conditions)
        outcomes.push_back({condition, verdictOn(condition, tested, now), foundIn(tested, condition.kind, file, now)});
    return outcomes;
}

QString RuleExplanation::text() const
{
    switch (verdict) {
    case RuleVerdict::Takes:
        return QStringLiteral("Die Regel nimmt diese Datei.");
    case RuleVerdict::RuleOff:
        return QStringLiteral("Die Regel ist ausgeschaltet.");
    case RuleVerdict::SourceRefused:
        return QStringLiteral("In den Ordner der Regel schaut der Agent nicht.");
    case RuleVerdict::OutsideSource:
        return QStringLiteral("Die Datei liegt nicht dort, wo die Regel sucht.");
    case RuleVerdict::ConditionFails: {
        const auto failed = std::ranges::find_if(conditions, [](const ConditionOutcome &one) { return !one.lets(); });
        return failed == conditions.end() ? QString() : failed->text();
    }
    case RuleVerdict::NotLookedAt:
        return QStringLiteral("Versteckte und unfertige Dateien, Skripte und Ordner lässt der Agent liegen.");
    case RuleVerdict::NamedByScript:
        return QStringLiteral("Die Datei bleibt, weil ein Skript sie benutzt.");
    case RuleVerdict::Protected:
        return QStringLiteral("Die Datei ist geschützt und bleibt, wie sie ist.");
    case RuleVerdict::TargetRefused:
        return QStringLiteral("Die Datei bleibt, weil der Agent in das Ziel der Regel nie etwas legt.");
    case RuleVerdict::AlreadyCopied:
        return QStringLiteral("Die Kopie dieser Datei steht schon im Ziel.");
    case RuleVerdict::NoRule:
    case RuleVerdict::NothingToDo:
        return QStringLiteral("Für diese Datei bleibt nichts zu tun.");
    }
    return {};
}

} // namespace brellin
