#pragma once

#include "Base/Instant.h"

#include <QDate>
#include <QLocale>
#include <QString>

namespace brellin {

/// The locale of everything shown or written: de_DE, regardless of the machine's locale.
const QLocale &german();

/// The calendar day of an instant in the user's time zone.
QDate localDay(Instant instant);

/// "3. September 2026"
QString longDate(Instant instant);
/// "3. September 2026, 14:05"
QString longDateTime(Instant instant);

/// Formats a size in decimal units, as a file manager does: "0 Byte", "1 Byte", "999 Byte", "12 KB", "1,2 MB", "3,45
/// GB". No decimals below 1 MB, one below 1 GB, two above; trailing zeros are dropped.
QString sizeText(qint64 bytes);

/// "1 Datei", "1.234 Dateien": the number with group separators, and the matching noun.
QString counted(qint64 count, const QString &one, const QString &many);

} // namespace brellin
