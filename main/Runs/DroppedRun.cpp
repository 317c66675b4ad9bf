#include "Runs/DroppedRun.h"

#include "Base/German.h"
#include "Runs/RunJson.h"
#include "Runs/RunKeys.h"
#include "System/StoredKind.h"

#include <algorithm>

namespace brellin {

template <>
struct JsonTable<DroppedRun> {
    static constexpr std::tuple fields{field("run", &DroppedRun::run), field("date", &DroppedRun::date),
                                       field("steps", &DroppedRun::steps)};
};

StoredKind DroppedRun::kind()
{
    return storedKind<DroppedRun>(RunKeys::dropped);
}

std::vector<DroppedRun> DroppedRun::read(const UserDefaults &defaults)
{
    return storedList<DroppedRun>(defaults, RunKeys::dropped).value_or({});
}

Result<void> DroppedRun::note(UserDefaults &defaults, const std::vector<DroppedRun> &dropped, std::size_t most)
{
    if (dropped.empty())
        return {};
    return updateList<DroppedRun>(defaults, RunKeys::dropped, [&](std::optional<std::vector<DroppedRun>> stored) {
        std::vector<DroppedRun> all = std::move(stored).value_or(std::vector<DroppedRun>());
        all.insert(all.begin(), dropped.begin(), dropped.end());
        all.resize(std::min(all.size(), most));
        return std::optional(std::move(all));
    });
}

QString textOf(const std::vector<DroppedRun> &dropped)
{
    if (dropped.empty())
        return {};
    QStringList runs;
    for (const DroppedRun &one : dropped)
        runs << QStringLiteral("vom %1 (%2)")
                    .arg(longDateTime(one.date),
                         counted(one.steps, QStringLiteral("Schritt"), QStringLiteral("Schritte")));
    return dropped.size() == 1
               ? QStringLiteral(
                     "Aus dem Verlauf gefallen, weil er sonst zu groß würde: die Aufräum-Aktion %1. Sie lässt "
                     "sich nicht mehr rückgängig machen.")
                     .arg(runs.front())
               : QStringLiteral("Aus dem Verlauf gefallen, weil er sonst zu groß würde: die Aufräum-Aktionen %1. Sie "
                                "lassen sich nicht mehr rückgängig machen.")
                     .arg(runs.join(QStringLiteral(", ")));
}

} // namespace brellin
