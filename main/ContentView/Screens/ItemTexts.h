#pragma once

#include "Base/Instant.h"
#include "ContentView/FileItem.h"
#include "Features/FolderSizes.h"

#include <QDate>
#include <QString>

namespace brellin {

/// "heute, 09:12", "gestern, 17:03", "18. Sep. 2026"; empty where the time is not known.
QString shortDateText(Instant instant, QDate today);

/// A folder's size as far as it is known: "1,3 GB", "mehr als 1,3 GB" where counting stopped at the limit.
QString folderSizeText(const std::optional<FolderSize> &size);

/// What a screen reader says of a row: name, kind, size, date and tags.
QString spokenText(const FileItem &item, const QString &size, QDate today);

} // namespace brellin
