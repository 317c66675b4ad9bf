#include "ContentView/FolderViews.h"

#include "Base/Json.h"
#include "System/PlainSetting.h"
#include "System/StoredKind.h"

#include <algorithm>
#include <cmath>

namespace brellin {

namespace {

const QString viewsKey = QStringLiteral("folderViews");
const QString arrangementsKey = QStringLiteral("folderArrangements");
const QString modeKey = QStringLiteral("lastViewMode");
const QString sizeKey = QStringLiteral("lastIconSize");
constexpr double usualIconSize = 72.0;
constexpr qsizetype mostFolders = 500;

QString wordOf(ViewMode mode)
{
    return mode == ViewMode::Icons ? QStringLiteral("icons") : QStringLiteral("details");
}

ViewMode modeOf(const QString &word)
{
    return word == u"icons" ? ViewMode::Icons : ViewMode::Details;
}

/// None if it is not a JSON object.
std::optional<QJsonObject> viewsIn(const std::optional<QByteArray> &json)
{
    const JsonResult<QJsonValue> value = parseJson(json.value_or(QByteArrayLiteral("{}")));
    return value && value->isObject() ? std::optional(value->toObject()) : std::nullopt;
}

/// Parses e.g. "icons:96".
FolderView viewOf(const QString &entry, double iconSize)
{
    const qsizetype colon = entry.indexOf(u':');
    FolderView view{modeOf(entry.left(colon)), iconSize};
    bool isNumber = false;
    const double size = colon < 0 ? 0 : QStringView(entry).mid(colon + 1).toDouble(&isNumber);
    if (isNumber && std::isfinite(size))
        view.iconSize = validIconSize(size);
    return view;
}

FolderView lastView(const UserDefaults &defaults)
{
    const QString mode = plainSetting(defaults, modeKey, QString());
    const double size = plainSetting(defaults, sizeKey, 0.0);
    return {modeOf(mode), size > 0 ? validIconSize(size) : usualIconSize};
}

const std::vector<std::pair<SortKey, QString>> &sortWords()
{
    static const std::vector<std::pair<SortKey, QString>> words{
        {SortKey::Name, QStringLiteral("name")},         {SortKey::Size, QStringLiteral("size")},
        {SortKey::Modified, QStringLiteral("modified")}, {SortKey::Kind, QStringLiteral("kind")},
        {SortKey::Created, QStringLiteral("created")},   {SortKey::Accessed, QStringLiteral("accessed")},
        {SortKey::Owner, QStringLiteral("owner")},       {SortKey::Rights, QStringLiteral("rights")},
        {SortKey::Tags, QStringLiteral("tags")},         {SortKey::Folder, QStringLiteral("folder")}};
    return words;
}

const std::vector<std::pair<GroupKey, QString>> &groupWords()
{
    static const std::vector<std::pair<GroupKey, QString>> words{{GroupKey::None, QString()},
                                                                 {GroupKey::Kind, QStringLiteral("kind")},
                                                                 {GroupKey::Modified, QStringLiteral("modified")},
                                                                 {GroupKey::Size, QStringLiteral("size")},
                                                                 {GroupKey::Tags, QStringLiteral("tags")}};
    return words;
}

template <class Key>
std::optional<Key> keyNamed(const std::vector<std::pair<Key, QString>> &words, QStringView wanted)
{
    const auto found = std::ranges::find(words, wanted, &std::pair<Key, QString>::second);
    return found == words.end() ? std::nullopt : std::optional(found->first);
}

template <class Key>
QString wordFor(const std::vector<std::pair<Key, QString>> &words, Key key)
{
    return std::ranges::find(words, key, &std::pair<Key, QString>::first)->second;
}

/// "-size,+name;kind": the criteria with their directions, then what the rows are grouped by.
QString arrangementText(const Arrangement &arrangement)
{
    QStringList criteria;
    for (const SortComparator &one : arrangement.order)
        criteria << (one.direction == SortDirection::Ascending ? u'+' : u'-') + wordFor(sortWords(), one.key);
    return criteria.join(u',') + u';' + wordFor(groupWords(), arrangement.group);
}

std::optional<Arrangement> arrangementOf(const QString &text)
{
    const std::optional<GroupKey> group = keyNamed(groupWords(), text.section(u';', 1));
    Arrangement arrangement{{}, group.value_or(GroupKey::None)};
    for (const QString &one : text.section(u';', 0, 0).split(u',')) {
        const std::optional<SortKey> key = keyNamed(sortWords(), QStringView(one).mid(1));
        if (!key || !group)
            return std::nullopt;
        arrangement.order.push_back(
            {*key, one.startsWith(u'-') ? SortDirection::Descending : SortDirection::Ascending});
    }
    return arrangement;
}

/// Drops any entry but the newest; which one does not matter.
void dropOne(QJsonObject &views, const QString &newest)
{
    auto first = views.begin();
    if (first != views.end() && first.key() == newest)
        ++first;
    if (first != views.end())
        views.erase(first);
}

/// Stores a text for the folder; keeps at most 500 folders.
Result<void> rememberIn(UserDefaults &defaults, const QString &key, const Location &folder, const QString &entry)
{
    const QString path = textOf(folder);
    const auto lastGood = [&] { return defaults.readLastGood(key).value_or(std::nullopt); };
    const auto change = [&](const std::optional<QByteArray> &json) -> std::optional<UserDefaults::Change> {
        const std::optional<QJsonObject> stored = viewsIn(json);
        QJsonObject views = stored ? *stored : viewsIn(lastGood()).value_or(QJsonObject());
        views.insert(path, entry);
        while (views.size() > mostFolders)
            dropOne(views, path);
        return UserDefaults::Change{jsonText(views), !stored};
    };
    return defaults.update(key, change);
}

} // namespace

double validIconSize(double size)
{
    return std::clamp(size, 40.0, 256.0);
}

FolderView rememberedView(const UserDefaults &defaults, const Location &folder, double iconSize)
{
    const QJsonObject views = viewsIn(defaults.json(viewsKey)).value_or(QJsonObject());
    const QJsonValue entry = views.value(textOf(folder));
    return entry.isString() ? viewOf(entry.toString(), iconSize) : lastView(defaults);
}

StoredKind folderViewsKind()
{
    return storedObjectKind(viewsKey, [](const QJsonValue &entry) {
        return entry.isString() ? QString() : QStringLiteral("das ist keine Ansicht");
    });
}

Result<void> rememberView(UserDefaults &defaults, const Location &folder, const FolderView &view)
{
    TRY(rememberIn(defaults, viewsKey, folder,
                   wordOf(view.mode) + u':' + QString::number(static_cast<int>(view.iconSize))));
    TRY(defaults.setValue(modeKey, wordOf(view.mode)));
    return defaults.setValue(sizeKey, view.iconSize);
}

std::optional<Arrangement> rememberedArrangement(const UserDefaults &defaults, const Location &folder)
{
    const QJsonValue entry = viewsIn(defaults.json(arrangementsKey)).value_or(QJsonObject()).value(textOf(folder));
    return entry.isString() ? arrangementOf(entry.toString()) : std::nullopt;
}

StoredKind folderArrangementsKind()
{
    return storedObjectKind(arrangementsKey, [](const QJsonValue &entry) {
        return entry.isString() ? QString() : QStringLiteral("das ist keine Sortierung");
    });
}

Result<void> rememberArrangement(UserDefaults &defaults, const Location &folder, const Arrangement &arrangement)
{
    return rememberIn(defaults, arrangementsKey, folder, arrangementText(arrangement));
}

} // namespace brellin
