#pragma once

#include "ContentView/FileItems.h"
#include "ContentView/ItemOrder.h"

#include <QJsonArray>
#include <QStringList>

#include <vector>

namespace brellin {

/// Entries as `--json` prints them, field by field.
QJsonArray jsonOf(const DisplayedItems &items);

/// Entries as rows for reading: size, time, kind, tags and name, or the path below `folder`.
std::vector<QStringList> rowsOf(const DisplayedItems &items, const Location &folder);

} // namespace brellin
