#include "Features/FolderColors.h"

#include "Base/Json.h"
#include "Features/FileTags.h"
#include "System/StoredKind.h"

#include <QJsonObject>

#include <utility>

namespace brellin {

namespace {

const QString key = QStringLiteral("folderColors");

bool isPaletteName(const QString &tag)
{
    return FileTags::color(tag).has_value();
}

/// Empty if it is not a palette tag.
QString paletteName(const QJsonValue &value)
{
    const QString tag = FileTags::germanName(value.toString());
    return isPaletteName(tag) ? tag : QString();
}

} // namespace

StoredKind FolderColors::kind()
{
    return storedObjectKind(key, [](const QJsonValue &value) {
        return paletteName(value).isEmpty() ? QStringLiteral("das ist keine Farbe der Palette") : QString();
    });
}

FolderColors::FolderColors(UserDefaults &defaults) : m_defaults(defaults), m_colors(decode(m_defaults.json(key)).colors)
{
}

FolderColors::Decoded FolderColors::decode(const std::optional<QByteArray> &json)
{
    const JsonResult<QJsonValue> value = parseJson(json.value_or(QByteArrayLiteral("{}")));
    Decoded decoded;
    decoded.isObject = decoded.isWhole = value && value->isObject();
    const QJsonObject object = decoded.isObject ? value->toObject() : QJsonObject();
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
        const QString tag = paletteName(entry.value());
        if (!tag.isEmpty())
            decoded.colors[locationFromText(entry.key()).native()] = tag;
        decoded.isWhole = decoded.isWhole && !tag.isEmpty();
    }
    return decoded;
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
    take(decode(m_defaults.json(key)).colors);
}

/// Applies an edit to the stored value, which another process may have changed since it was read. If it cannot be
/// stored, the colour still applies until the program ends.
void FolderColors::change(const std::function<void(Colors &)> &edit)
{
    Colors colors = m_colors;
    const Result<void> kept =
        m_defaults.update(key, [&](const std::optional<QByteArray> &json) -> std::optional<UserDefaults::Change> {
            const Decoded stored = decode(json);
            colors =
                stored.isObject ? stored.colors : decode(m_defaults.readLastGood(key).value_or(std::nullopt)).colors;
            const Colors before = colors;
            edit(colors);
            if (colors == before)
                return std::nullopt;
            QJsonObject object;
            for (const auto &[path, tag] : colors)
                object.insert(textOf(Location(path)), tag);
            return UserDefaults::Change{jsonText(object), !stored.isWhole};
        });
    if (!kept) {
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
    const std::vector<Observer> observers = m_observers; // copied: an observer may add another
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
