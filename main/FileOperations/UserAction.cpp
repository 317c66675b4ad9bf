#include "FileOperations/UserAction.h"

#include "Base/German.h"

#include <algorithm>
#include <iterator>

namespace brellin {

namespace {

using Kind = UserAction::Kind;

/// What was made, as against what was there before.
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
        return QStringLiteral("Umbenennen von %1 rückgängig");
    case Kind::Move:
        return QStringLiteral("Verschieben von %1 rückgängig");
    case Kind::Copy:
        return QStringLiteral("Kopieren von %1 rückgängig");
    case Kind::Trash:
        return QStringLiteral("Legen von %1 in den Papierkorb rückgängig");
    case Kind::Archive:
        return QStringLiteral("Komprimieren zu %1 rückgängig");
    case Kind::Unpack:
        return QStringLiteral("Entpacken von %1 rückgängig");
    case Kind::NewFolder:
    case Kind::NewFile:
    case Kind::Alias:
        break;
    }
    return QStringLiteral("Anlegen von %1 rückgängig");
}

QString quoted(const Location &location)
{
    return QStringLiteral("„%1“").arg(shownName(location));
}

QString lineFor(Kind kind, const UserAction::Entry &entry)
{
    switch (kind) {
    case Kind::Rename:
    case Kind::BatchRename:
        return QStringLiteral("%1 heißt wieder %2").arg(quoted(entry.to), quoted(entry.from));
    case Kind::Move:
        return QStringLiteral("%1 kommt zurück nach %2").arg(quoted(entry.to), quoted(entry.from.parent_path()));
    case Kind::Trash:
        return QStringLiteral("%1 kommt aus dem Papierkorb zurück nach %2")
            .arg(quoted(entry.from), quoted(entry.from.parent_path()));
    default:
        return QStringLiteral("%1 kommt in den Papierkorb").arg(quoted(entry.to));
    }
}

} // namespace

QString undoTitle(const UserAction &action)
{
    const auto count = static_cast<qint64>(action.entries.size());
    if (count != 1)
        return pattern(action.kind).arg(counted(count, QStringLiteral("Element"), QStringLiteral("Elementen")));
    const UserAction::Entry &entry = action.entries.front();
    return pattern(action.kind).arg(quoted(isMade(action.kind) ? entry.to : entry.from));
}

QStringList undoLines(const UserAction &action)
{
    QStringList lines;
    std::ranges::transform(action.entries, std::back_inserter(lines),
                           [&](const UserAction::Entry &entry) { return lineFor(action.kind, entry); });
    return lines;
}

UserAction::Entry recordOf(const Location &from, const Location &to)
{
    return {from, to, FileState::of(readAttributes(to).value_or(FileAttributes()))};
}

} // namespace brellin
