#include "ContentView/Screens/ArrangementMenu.h"

#include "ContentView/BrowserModel.h"
#include "ContentView/Screens/ItemTexts.h"
#include "Look/Symbols.h"

#include <QMenu>

#include <array>

namespace brellin {

namespace {

constexpr std::array sortKeys{SortKey::Name,    SortKey::Size,     SortKey::Modified, SortKey::Kind,   SortKey::Tags,
                              SortKey::Created, SortKey::Accessed, SortKey::Owner,    SortKey::Rights, SortKey::Folder};

QAction *addChoice(QMenu &menu, const QString &title, bool chosen, const std::function<void()> &choose)
{
    QAction *const entry = menu.addAction(title, &menu, choose);
    entry->setCheckable(true);
    entry->setChecked(chosen);
    return entry;
}

SortOrder reversed(SortOrder order)
{
    SortDirection &direction = order.front().direction;
    direction = direction == SortDirection::Ascending ? SortDirection::Descending : SortDirection::Ascending;
    return order;
}

void addSecond(QMenu &menu, BrowserModel &pane)
{
    const SortOrder &now = pane.sortOrder.get();
    QMenu *const second = menu.addMenu(QStringLiteral("Bei Gleichheit nach"));
    second->setObjectName(QStringLiteral("secondSortMenu"));
    for (const SortKey key : sortKeys)
        if (key != now.front().key)
            addChoice(*second, titleOf(key), now.size() > 1 && now[1].key == key,
                      [&pane, key] { pane.setSortOrder(chosenSecond(pane.sortOrder.get(), key)); });
}

void addSorting(QMenu &menu, BrowserModel &pane)
{
    QMenu *const sorting =
        menu.addMenu(Symbols::icon(QStringLiteral("arrow-down-up")), QStringLiteral("Sortieren nach"));
    sorting->setObjectName(QStringLiteral("sortMenu"));
    const SortOrder &now = pane.sortOrder.get();
    for (const SortKey key : sortKeys)
        addChoice(*sorting, titleOf(key), !now.empty() && now.front().key == key,
                  [&pane, key] { pane.setSortOrder(orderBy(key, firstDirection(key))); });
    if (now.empty())
        return;
    sorting->addSeparator();
    addChoice(*sorting, QStringLiteral("Umgekehrte Reihenfolge"),
              now.front().direction != firstDirection(now.front().key),
              [&pane] { pane.setSortOrder(reversed(pane.sortOrder.get())); });
    addSecond(*sorting, pane);
}

void addGrouping(QMenu &menu, BrowserModel &pane)
{
    QMenu *const grouping = menu.addMenu(Symbols::icon(QStringLiteral("layers")), QStringLiteral("Gruppieren nach"));
    grouping->setObjectName(QStringLiteral("groupMenu"));
    static const std::array<std::pair<GroupKey, QString>, 4> titles{{{GroupKey::Kind, QStringLiteral("Art")},
                                                                     {GroupKey::Modified, QStringLiteral("Datum")},
                                                                     {GroupKey::Size, QStringLiteral("Größe")},
                                                                     {GroupKey::Tags, QStringLiteral("Markierung")}}};
    const GroupKey now = pane.grouping.get();
    for (const auto &[key, title] : titles)
        addChoice(*grouping, title, now == key, [&pane, wanted = key] { pane.setGrouping(wanted); });
    grouping->addSeparator();
    addChoice(*grouping, QStringLiteral("Nicht gruppieren"), now == GroupKey::None,
              [&pane] { pane.setGrouping(GroupKey::None); });
}

} // namespace

void addArrangement(QMenu &menu, BrowserModel &pane)
{
    addSorting(menu, pane);
    addGrouping(menu, pane);
}

} // namespace brellin
