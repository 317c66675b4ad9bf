#include "FileOperations/UserAction.h"

#include "Base/German.h"

#include <algorithm>
#include <iterator>

namespace brellin {

namespace {

using Kind = UserAction::Kind;

/// Whether the action is named after the created entry; copies are named after their source.
bool isMade(Kind kind)
{
    return kind == Kind::NewFolder || kind == Kind::NewFile || kind == Kind::Alias || kind == Kind::Archive ||
           kind == Kind::Unpack;
}

QString pattern(Kind kind)
{
    switch (kind) {
    case Kind::Rename:
    case Kind::BatchRename:
        return QStringLiteral("Umbenennen von %1");
    case Kind::Move:
        return QStringLiteral("Verschieben von %1");
    case Kind::Copy:
        return QStringLiteral("Kopieren von %1");
    case Kind::Trash:
        return QStringLiteral("Legen von %1 in den Papierkorb");
    case Kind::Rights:
        return QStringLiteral("Ändern der Rechte von %1");
    case Kind::Archive:
        return QStringLiteral("Komprimieren zu %1");
    case Kind::Unpack:
        return QStringLiteral("Entpacken von %1");
    case Kind::NewFolder:
    case Kind::NewFile:
    case Kind::Alias:
        break;
    }
    return QStringLiteral("Anlegen von %1");
}

QString quoted(const Location &location)
{
    return QStringLiteral("„%1“").arg(shownName(location));
}

/// „Umbenennen von „a.txt““; `name` selects the path to name. Folders that only lost their content do not count.
QString nounOf(const UserAction &action, Location UserAction::Entry::*name)
{
    std::vector<UserAction::Entry> named = action.entries;
    std::erase_if(named, [](const UserAction::Entry &entry) { return entry.merged.has_value(); });
    if (named.empty())
        named = action.entries;
    const auto count = static_cast<qint64>(named.size());
    return pattern(action.kind)
        .arg(count == 1 ? quoted(named.front().*name)
                        : counted(count, QStringLiteral("Element"), QStringLiteral("Elementen")));
}

QString lineFor(Kind kind, const UserAction::Entry &entry)
{
    if (entry.merged)
        return QStringLiteral("%1 wird wieder angelegt").arg(quoted(entry.from));
    switch (kind) {
    case Kind::Rename:
    case Kind::BatchRename:
        return QStringLiteral("%1 heißt wieder %2").arg(quoted(entry.to), quoted(entry.from));
    case Kind::Move:
        return QStringLiteral("%1 kommt zurück nach %2").arg(quoted(entry.to), quoted(entry.from.parent_path()));
    case Kind::Trash:
        return QStringLiteral("%1 kommt aus dem Papierkorb zurück nach %2")
            .arg(quoted(entry.from), quoted(entry.from.parent_path()));
    case Kind::Rights:
        return QStringLiteral("%1 bekommt die früheren Rechte zurück").arg(quoted(entry.to));
    default:
        return QStringLiteral("%1 kommt in den Papierkorb").arg(quoted(entry.to));
    }
}

} // namespace

QString nameOf(const UserAction &action)
{
    const bool made = isMade(action.kind);
    if (!action.undone)
        return nounOf(action, made ? &UserAction::Entry::to : &UserAction::Entry::from);
    if (action.kind == Kind::Copy)
        return nounOf(action, &UserAction::Entry::source);
    return nounOf(action, made ? &UserAction::Entry::from : &UserAction::Entry::to);
}

QString undoTitle(const UserAction &action)
{
    return nameOf(action) + QStringLiteral(" rückgängig");
}

QString redoTitle(const UserAction &again)
{
    return nameOf(again) + QStringLiteral(" wiederholen");
}

QStringList undoLines(const UserAction &action)
{
    QStringList lines;
    std::ranges::transform(action.entries, std::back_inserter(lines),
                           [&](const UserAction::Entry &entry) { return lineFor(action.kind, entry); });
    return lines;
}

std::vector<EntryMove> movesOf(const UserAction &action)
{
    if (action.kind == Kind::Rights)
        return {};
    const bool created = isMade(action.kind) || action.kind == Kind::Copy;
    std::vector<EntryMove> moves;
    for (const UserAction::Entry &entry : action.entries) {
        // Its colour stays with its path: undo makes the folder again.
        if (entry.merged) {
            moves.push_back({entry.from, entry.from});
            continue;
        }
        if (entry.replaced)
            moves.push_back({entry.to, *entry.replaced});
        moves.push_back({created ? Location() : entry.from, entry.to});
    }
    return moves;
}

UserAction::Entry recordOf(const Location &from, const Location &to)
{
    const FileAttributes now = readAttributes(to).value_or(FileAttributes());
    UserAction::Entry entry{from, to, FileState::of(now)};
    entry.created = now.created;
    return entry;
}

UserAction::Entry recordOfMade(const Location &from, const Location &to)
{
    UserAction::Entry entry = recordOf(from, to);
    entry.content = TreeMark::shared(to);
    return entry;
}

} // namespace brellin
