#pragma once

#include "ContentView/FileItems.h"
#include "ContentView/ItemOrder.h"

#include <QJsonArray>
#include <QStringList>

#include <vector>

namespace brellin {

/// Entries for `--json`.
QJsonArray jsonOf(const DisplayedItems &items);

/// Entries as text rows: size, time, kind, tags, and the name or the path below `folder`.
std::vector<QStringList> rowsOf(const DisplayedItems &items, const Location &folder);

} // namespace brellin
