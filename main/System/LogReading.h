#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace brellin {

/// The longest log or journal that is read. Who writes one stops before that.
constexpr qint64 longestLog = qint64(256) << 20U;

/// "Die Datei ist größer als die erlaubten 256 MB." (`errc::file_too_large`)
Failure tooLarge(qint64 most);

/// The whole text of a log or journal, up to `longestLog`.
Result<QByteArray> readLog(const Location &file);

/// A log, or the folder of all, that is there and not to be understood whole. Nobody knows what it tells of, so it is kept
/// until the user has looked into it.
struct UnreadLog {
    Location file;
    QString why;

    bool operator==(const UnreadLog &) const = default;
    /// "„1.log“ ist nicht lesbar: …"
    QString text() const;
};

/// Why the logs in a folder cannot be listed, if so; a folder that is not there has none.
std::optional<UnreadLog> unreadFolder(const Location &folder);

} // namespace brellin
