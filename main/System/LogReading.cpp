#include "System/LogReading.h"

#include "Base/German.h"
#include "System/ReadWhole.h"

namespace brellin {

Failure tooLarge(qint64 most)
{
    return {QStringLiteral("Die Datei ist größer als die erlaubten %1.").arg(sizeText(most)),
            std::make_error_code(std::errc::file_too_large)};
}

Result<QByteArray> readLog(const Location &file)
{
    Result<QByteArray> text = readWhole(file, longestLog);
    if (!text && text.error().is(std::errc::file_too_large))
        return failure(tooLarge(longestLog));
    return text;
}

QString UnreadLog::text() const
{
    return QStringLiteral("„%1“ ist nicht lesbar: %2").arg(shownName(file), why);
}

std::optional<UnreadLog> unreadFolder(const Location &folder)
{
    std::error_code error;
    const std::filesystem::directory_iterator entries(folder, error);
    if (!error || error == std::errc::no_such_file_or_directory)
        return std::nullopt;
    return UnreadLog{folder, Failure::system(error.value()).message};
}

} // namespace brellin
