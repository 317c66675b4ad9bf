#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace brellin {

/// The maximum size of a log or journal that is read. Writers stop before reaching it.
constexpr qint64 longestLog = qint64(256) << 20U;

/// "Die Datei ist größer als die erlaubten 256 MB." (`errc::file_too_large`)
Failure tooLarge(qint64 most);

/// The content of a log or journal, up to `longestLog`.
Result<QByteArray> readLog(const Location &file);

/// A log, or the folder of logs, that exists but cannot be read completely. It is kept until the user has looked at it.
struct UnreadLog {
    Location file;
    QString why;

    bool operator==(const UnreadLog &) const = default;
    /// "„1.log“ ist nicht lesbar: …"
    QString text() const;
};

/// Why the logs of a folder cannot be listed; nullopt if they can. A missing folder is fine.
std::optional<UnreadLog> unreadFolder(const Location &folder);

} // namespace brellin
