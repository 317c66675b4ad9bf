#pragma once

#include "Disk/Walk.h"

#include <QStringList>

namespace brellin {

/// The folders a walk of `top` could not read: `top` itself if that failed, but not if it does not exist. Empty if cancelled.
std::vector<Location> unreadableIn(const Location &top, const Result<WalkOutcome> &walked);

/// Adds folders to a list that is sorted by path and holds each once.
void addUnreadable(std::vector<Location> &all, const std::vector<Location> &more);

/// „3 Ordner nicht lesbar“
QString unreadableText(const std::vector<Location> &folders);

/// The paths as text.
QStringList shown(const std::vector<Location> &folders);

} // namespace brellin
