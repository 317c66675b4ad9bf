#include "Features/FolderColors.h"

#include "Base/Json.h"
#include "Features/FileTags.h"
#include "System/StoredKind.h"

#include <QJsonObject>

#include <set>
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

/// Old to new path; empty if the entry is gone.
using PathMoves = std::map<std::string, std::string>;

/// The path itself and all above it, the deepest first, until `seen` returns true.
template <class Seen>
void climb(const std::string &path, const Seen &seen)
{
    for (Location place = path; !seen(place.native()) && place.has_relative_path();)
        place = place.parent_path();
}

/// Where `path` is after the moves, empty if it is gone; none if it is still there.
std::optional<std::string> pathAfter(const std::string &path, const PathMoves &moves)
{
    std::optional<std::string> now;
    climb(path, [&](const std::string &place) {
        const auto move = moves.find(place);
        if (move == moves.end())
            return false;
        now = move->second.empty() ? std::string() : move->second + path.substr(place.size());
        return true;
    });
    return now;
}

bool isIn(const std::string &path, const std::set<std::string> &folders)
{
    bool found = false;
    climb(path, [&](const std::string &place) { return found = folders.contains(place); });
    return found;
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

void FolderColors::moved(const std::vector<EntryMove> &moves)
{
    PathMoves there;
    std::set<std::string> arrived;
    for (const EntryMove &move : moves) {
        if (move.from.empty() || move.from == move.to)
            continue;
        there[standardised(move.from).native()] = move.to.empty() ? std::string() : standardised(move.to).native();
        if (!move.to.empty())
            arrived.insert(standardised(move.to).native());
    }
    if (there.empty())
        return;
    change([&](Colors &colors) {
        Colors after;
        Colors carried;
        for (const auto &[path, tag] : colors) {
            if (const std::optional<std::string> now = pathAfter(path, there); now && !now->empty())
                carried[*now] = tag;
            else if (!now && !isIn(path, arrived))
                after[path] = tag;
        }
        for (auto &[path, tag] : carried)
            after[path] = tag;
        colors = std::move(after);
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
