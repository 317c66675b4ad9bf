#pragma once

#include "Base/Instant.h"
#include "ContentView/ItemOrder.h"
#include "Features/FolderSizes.h"

#include <QDate>
#include <QString>

namespace brellin {

/// The title of a column: „Geändert“.
QString titleOf(SortKey key);

/// "-rw-r--r-- (644)"; empty for links and if the details were not read.
QString rightsText(const FileItem &item);

/// "heute, 09:12", "gestern, 17:03", "18. Sep. 2026"; empty if unknown.
QString shortDateText(Instant instant, QDate today);

/// The known size of a folder: "1,3 GB", or "mehr als 1,3 GB" if counting stopped at the limit.
QString folderSizeText(const std::optional<FolderSize> &size);

/// A row's text for screen readers: name, kind, size, date, tags, and where its content was found.
QString spokenText(const FileItem &item, const QString &size, const QString &passage, QDate today);

} // namespace brellin
