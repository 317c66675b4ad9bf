#pragma once

#include "Base/Instant.h"

#include <QDate>
#include <QLocale>
#include <QString>

namespace brellin {

/// The locale of everything that is shown or written: de_DE, whatever the machine's own is.
const QLocale &german();

/// The calendar day of an instant in the user's time zone.
QDate localDay(Instant instant);

/// "3. September 2026"
QString longDate(Instant instant);
/// "3. September 2026, 14:05"
QString longDateTime(Instant instant);
/// "2026-09-03"
QString isoDay(Instant instant);

/// A decimal byte size as a file manager writes it: "0 Byte", "1 Byte", "999 Byte", "12 KB", "1,2 MB", "3,45 GB":
/// no decimal below one MB, one below one GB, two above; a closing zero is left out.
QString sizeText(qint64 bytes);

/// "1 Datei", "1.234 Dateien": the number grouped, the noun chosen by it.
QString counted(qint64 count, const QString &one, const QString &many);

} // namespace brellin
