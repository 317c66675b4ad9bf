#include "ContentView/FolderViews.h"

#include "Base/Json.h"
#include "System/PlainSetting.h"
#include "System/StoredKind.h"

#include <algorithm>
#include <cmath>

namespace brellin {

namespace {

const QString viewsKey = QStringLiteral("folderViews");
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

/// Drops any entry but the newest; which one does not matter.
void dropOne(QJsonObject &views, const QString &newest)
{
    auto first = views.begin();
    if (first != views.end() && first.key() == newest)
        ++first;
    if (first != views.end())
        views.erase(first);
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
    const QString key = textOf(folder);
    const auto lastGood = [&] { return defaults.readLastGood(viewsKey).value_or(std::nullopt); };
    const auto change = [&](const std::optional<QByteArray> &json) -> std::optional<UserDefaults::Change> {
        const std::optional<QJsonObject> stored = viewsIn(json);
        QJsonObject views = stored ? *stored : viewsIn(lastGood()).value_or(QJsonObject());
        views.insert(key, wordOf(view.mode) + u':' + QString::number(static_cast<int>(view.iconSize)));
        while (views.size() > mostFolders)
            dropOne(views, key);
        return UserDefaults::Change{jsonText(views), !stored};
    };
    TRY(defaults.update(viewsKey, change));
    TRY(defaults.setValue(modeKey, wordOf(view.mode)));
    return defaults.setValue(sizeKey, view.iconSize);
}

} // namespace brellin
