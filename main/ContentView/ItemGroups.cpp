#include "ContentView/ItemGroups.h"

#include "Base/German.h"
#include "Base/LocalDays.h"
#include "ContentView/NameOrder.h"
#include "Features/FileTags.h"

#include <QHash>

#include <algorithm>
#include <array>
#include <limits>

namespace brellin {

namespace {

constexpr std::uint64_t folderPlace = 0;
constexpr std::uint64_t lastPlace = std::numeric_limits<std::uint64_t>::max();

struct Group {
    std::uint64_t place = 0;
    QString title;
};

Group sizeGroup(std::int64_t size)
{
    struct Limit {
        std::int64_t least;
        QStringView title;
    };
    static constexpr std::array limits{Limit{1'000'000'000, u"Ab 1 GB"}, Limit{100'000'000, u"100 MB bis 1 GB"},
                                       Limit{1'000'000, u"1 MB bis 100 MB"}, Limit{1, u"Unter 1 MB"},
                                       Limit{std::numeric_limits<std::int64_t>::min(), u"Leer"}};
    std::uint64_t place = 0;
    while (size < limits.at(place).least)
        ++place;
    return {place + 1, limits.at(place).title.toString()};
}

/// Groups grow with the distance from today: days, then months of this year, then years.
Group dayGroup(QDate day, QDate today)
{
    const qint64 ago = day.daysTo(today);
    if (ago < 0)
        return {1, QStringLiteral("Zukünftig")};
    if (ago == 0)
        return {2, QStringLiteral("Heute")};
    if (ago == 1)
        return {3, QStringLiteral("Gestern")};
    if (ago <= 7)
        return {4, QStringLiteral("Letzte 7 Tage")};
    if (ago <= 30)
        return {5, QStringLiteral("Letzte 30 Tage")};
    const auto years = static_cast<std::uint64_t>(today.year() - day.year());
    if (years == 0)
        return {6 + static_cast<std::uint64_t>(12 - day.month()), german().toString(day, QStringLiteral("MMMM yyyy"))};
    return {20 + years, QString::number(day.year())};
}

Group tagGroup(const FileItem &item)
{
    for (std::size_t i = 0; i < FileTags::all.size(); ++i)
        if (item.tags.contains(FileTags::all.at(i).name))
            return {i + 1, FileTags::all.at(i).name.toString()};
    return {lastPlace, QStringLiteral("Ohne Markierung")};
}

/// Groups named by a text of each entry, in the order of these texts after `before`.
class NamedGroups {
public:
    explicit NamedGroups(std::uint64_t before) : m_before(before) {}

    void add(std::uint32_t item, const QString &title)
    {
        const auto known = m_numbers.constFind(title);
        const std::size_t number = known != m_numbers.constEnd() ? *known : m_titles.size();
        if (number == m_titles.size()) {
            m_numbers.insert(title, number);
            m_titles.push_back(title);
        }
        m_members.emplace_back(item, number);
    }
    void addTo(ItemGroups &groups) const
    {
        const std::vector<std::uint32_t> ranks = textRanks(m_titles);
        for (std::size_t i = 0; i < m_titles.size(); ++i)
            groups.titles.try_emplace(m_before + ranks[i], m_titles[i]);
        for (const auto &[item, number] : m_members)
            groups.places[item] = m_before + ranks[number];
    }

private:
    std::uint64_t m_before;
    QHash<QString, std::size_t> m_numbers;
    std::vector<QString> m_titles;
    std::vector<std::pair<std::uint32_t, std::size_t>> m_members;
};

} // namespace

ItemGroups groupsOf(const FileItems &items, GroupKey key, QDate today)
{
    ItemGroups groups{std::vector<std::uint64_t>(items.size(), folderPlace), {{folderPlace, kindOfFolder()}}};
    NamedGroups named(FileTags::all.size() + 1);
    LocalDays days;
    const auto fixed = [&](std::uint32_t item, const Group &group) {
        groups.places[item] = group.place;
        groups.titles.try_emplace(group.place, group.title);
    };
    for (std::uint32_t i = 0; i < items.size(); ++i) {
        const FileItem &item = items[i];
        if (item.isFolder)
            continue;
        if (key == GroupKey::Kind)
            named.add(i, item.kind);
        else if (key == GroupKey::Size)
            fixed(i, sizeGroup(item.size));
        else if (key == GroupKey::Modified && item.modified == Instant::min())
            fixed(i, {lastPlace, QStringLiteral("Ohne Datum")});
        else if (key == GroupKey::Modified)
            fixed(i, dayGroup(days.of(item.modified), today));
        else if (const Group group = tagGroup(item); group.place != lastPlace || item.tags.isEmpty())
            fixed(i, group);
        else
            named.add(i, item.tags.constFirst());
    }
    named.addTo(groups);
    return groups;
}

} // namespace brellin
