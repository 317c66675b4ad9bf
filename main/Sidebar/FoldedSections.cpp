#include "Sidebar/FoldedSections.h"

#include "System/StoredList.h"

namespace brellin {

namespace {

const QString foldedKey = QStringLiteral("sidebarFolded");
using Sections = std::vector<QString>;

} // namespace

FoldedSections::FoldedSections(UserDefaults &defaults) : m_defaults(defaults)
{
    reload();
}

void FoldedSections::reload()
{
    const StoredList<QString> list = storedList<QString>(m_defaults, foldedKey);
    if (list.isWhole() || list.isKnown())
        publish(folded, std::set(list.records.begin(), list.records.end()));
}

Result<void> FoldedSections::setFolded(const QString &section, bool fold)
{
    std::set<QString> all = folded.get();
    if (fold)
        all.insert(section);
    else
        all.erase(section);
    Result<void> stored =
        updateList<QString>(m_defaults, foldedKey, [&](std::optional<Sections> list) -> std::optional<Sections> {
            Sections changed = list ? *std::move(list) : Sections();
            std::erase(changed, section);
            if (fold)
                changed.push_back(section);
            return changed;
        });
    publish(folded, std::move(all));
    return stored;
}

} // namespace brellin
