#include "ContentView/ResultsUpdate.h"

#include "ContentView/Listing.h"

#include <algorithm>
#include <map>

namespace brellin {

namespace {

using Moves = std::map<Location, Location>;

/// The move that the path, or a folder above it, was part of.
Moves::const_iterator moveOf(const Moves &moves, Location path)
{
    for (;; path = path.parent_path()) {
        const auto found = moves.find(path);
        if (found != moves.end() || path == path.parent_path())
            return found;
    }
}

Moves movesOf(const std::vector<ChangedEntry> &changes)
{
    Moves moves;
    for (const ChangedEntry &change : changes) {
        if (!change.from.empty())
            moves.emplace(change.from, change.to);
        if (!change.to.empty())
            moves.emplace(change.to, change.to);
    }
    return moves;
}

/// Empty if it is gone.
Location movedBy(const Moves::const_iterator &move, const Location &path)
{
    const auto &[from, to] = *move;
    if (from == path)
        return to;
    return to.empty() ? Location() : to / path.lexically_relative(from);
}

} // namespace

FileItems updatedResults(const FileItems &items, const std::vector<ChangedEntry> &changes,
                         const std::function<bool(const FileItem &)> &belongs)
{
    const Moves moves = movesOf(changes);
    std::vector<Location> again;
    for (const ChangedEntry &change : changes) {
        if (!change.to.empty())
            again.push_back(change.to);
    }
    std::vector<FileItem> now;
    for (const FileItem &item : items) {
        const Location path = item.location();
        const auto move = moveOf(moves, path);
        if (move == moves.end())
            now.push_back(item);
        else if (move->first != path && !move->second.empty())
            again.push_back(movedBy(move, path));
    }
    std::ranges::sort(again);
    again.erase(std::ranges::unique(again).begin(), again.end());
    for (const FileItem &item : readItems(again)) {
        if (belongs(item))
            now.push_back(item);
    }
    return FileItems(std::move(now));
}

std::set<std::string> pathsAfter(const FileItems &items, const std::vector<ChangedEntry> &changes)
{
    const Moves moves = movesOf(changes);
    std::set<std::string> paths;
    for (const FileItem &item : items) {
        const Location path = item.location();
        const auto move = moveOf(moves, path);
        if (const Location now = move == moves.end() ? path : movedBy(move, path); !now.empty())
            paths.insert(now.native());
    }
    return paths;
}

} // namespace brellin
