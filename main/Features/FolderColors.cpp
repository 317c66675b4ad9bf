#include "Features/FolderColors.h"

#include "Base/Json.h"
#include "Features/FileTags.h"

#include <QJsonObject>

#include <utility>

namespace brellin {

namespace {

const QString key = QStringLiteral("folderColors");

bool isPaletteName(const QString &tag)
{
    return FileTags::color(tag).has_value();
}

} // namespace

FolderColors::FolderColors(UserDefaults &defaults) : m_defaults(defaults)
{
    bool damaged = false;
    m_colors = read(m_defaults.json(key), damaged);
}

FolderColors::Colors FolderColors::read(const std::optional<QByteArray> &json, bool &damaged)
{
    Colors colors;
    damaged = false;
    if (!json)
        return colors;
    const JsonResult<QJsonValue> value = parseJson(*json);
    damaged = !value || !value->isObject();
    if (damaged)
        return colors;
    const QJsonObject object = value->toObject();
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
        if (const QString tag = FileTags::germanName(entry.value().toString()); isPaletteName(tag))
            colors[locationFromText(entry.key()).native()] = tag;
    }
    return colors;
}

std::optional<QString> FolderColors::color(const Location &folder) const
{
    const auto found = m_colors.find(folder.native());
    return found == m_colors.end() ? std::nullopt : std::optional(found->second);
}

void FolderColors::setColor(const Location &folder, std::optional<QString> tagName)
{
    if (tagName && !isPaletteName(*tagName))
        return;
    change([&](Colors &colors) {
        if (tagName)
            colors[standardised(folder).native()] = FileTags::germanName(*tagName);
        else
            colors.erase(standardised(folder).native());
    });
}

void FolderColors::moved(const Location &from, const Location &to)
{
    const std::string old = standardised(from).native();
    const std::string fresh = standardised(to).native();
    if (old == fresh)
        return;
    change([&](Colors &colors) {
        Colors carried;
        std::erase_if(colors, [&](const auto &entry) {
            if (!isAtOrBelow(std::string_view(entry.first), std::string_view(old)))
                return false;
            carried[fresh + entry.first.substr(old.size())] = entry.second;
            return true;
        });
        for (auto &[path, tag] : carried)
            colors[path] = tag;
    });
}

void FolderColors::reload()
{
    bool damaged = false;
    take(read(m_defaults.json(key), damaged));
}

/// Changes what is stored now, which another program may have changed since it was read here. Where it cannot be stored, the
/// session has the colour all the same.
void FolderColors::change(const std::function<void(Colors &)> &edit)
{
    Colors colors = m_colors;
    const Result<void> stored =
        m_defaults.update(key, [&](const std::optional<QByteArray> &json) -> std::optional<UserDefaults::Change> {
            bool damaged = false;
            colors = read(json, damaged);
            if (bool stillDamaged = damaged)
                colors = read(m_defaults.readLastGood(key).value_or(std::nullopt), stillDamaged);
            const Colors before = colors;
            edit(colors);
            if (colors == before)
                return std::nullopt;
            QJsonObject object;
            for (const auto &[path, tag] : colors)
                object.insert(textOf(Location(path)), tag);
            return UserDefaults::Change{jsonText(object), damaged};
        });
    if (!stored) {
        colors = m_colors;
        edit(colors);
    }
    take(std::move(colors));
}

void FolderColors::take(Colors colors)
{
    std::vector<Location> changed;
    const auto compare = [&](const Colors &one, const Colors &other, bool alsoDifferent) {
        for (const auto &[path, tag] : one) {
            const auto found = other.find(path);
            if (found == other.end() || (alsoDifferent && found->second != tag))
                changed.emplace_back(path);
        }
    };
    compare(m_colors, colors, false);
    compare(colors, m_colors, true);
    m_colors = std::move(colors);
    std::erase_if(m_observers, [](const Observer &one) { return one.receiver.isNull(); });
    const std::vector<Observer> observers = m_observers; // an observer may add another
    for (const Location &folder : changed) {
        for (const Observer &observer : observers) {
            if (observer.receiver)
                observer.heard(folder);
        }
    }
}

void FolderColors::observe(QObject *receiver, std::function<void(const Location &)> heard)
{
    m_observers.push_back({receiver, std::move(heard)});
}

} // namespace brellin
