#include "Sidebar/ExpandedFolders.h"

#include "System/StoredList.h"

#include <algorithm>
#include <utility>

namespace brellin {

namespace {

const QString key = QStringLiteral("sidebarExpanded");
using Folders = std::vector<Location>;

} // namespace

ExpandedFolders::ExpandedFolders(UserDefaults &defaults) : m_defaults(defaults)
{
    m_stored = storedList<Location>(m_defaults, key).value_or({});
}

Result<void> ExpandedFolders::setExpanded(const Folders &folders, bool expanded)
{
    Folders all;
    TRY(updateList<Location>(m_defaults, key, [&](std::optional<Folders> list) -> std::optional<Folders> {
        all = list ? *std::move(list) : Folders();
        for (const Location &folder : folders) {
            std::erase(all, folder);
            if (expanded)
                all.push_back(folder);
        }
        constexpr std::ptrdiff_t most = 500;
        const auto tooMany = std::max<std::ptrdiff_t>(0, std::ssize(all) - most);
        all.erase(all.begin(), all.begin() + tooMany);
        return all;
    }));
    m_stored = std::move(all);
    return {};
}

void ExpandedFolders::reload()
{
    StoredList<Location> list = storedList<Location>(m_defaults, key);
    if ((!list.isWhole() && !list.isKnown()) || list.records == m_stored)
        return;
    m_stored = std::move(list.records);
    publish(changesByOthers, changesByOthers.get() + 1);
}

} // namespace brellin
