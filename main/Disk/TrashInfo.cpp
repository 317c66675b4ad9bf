#include "Disk/TrashInfo.h"

#include <charconv>

namespace brellin {

namespace {

constexpr std::string_view group = "[Trash Info]";
constexpr std::string_view pathKey = "Path=";

bool standsForItself(char byte)
{
    const bool letter = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
    return letter || (byte >= '0' && byte <= '9') || std::string_view("-._~/").find(byte) != std::string_view::npos;
}

std::string percentEncoded(std::string_view bytes)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        if (standsForItself(byte))
            text += byte;
        else
            text.append({'%', digits[value >> 4U], digits[value & 15U]});
    }
    return text;
}

std::string percentDecoded(std::string_view text)
{
    std::string bytes;
    for (std::size_t at = 0; at < text.size(); ++at) {
        unsigned char value = 0;
        const char *digits = text.data() + at + 1;
        if (text[at] == '%' && at + 2 < text.size() &&
            std::from_chars(digits, digits + 2, value, 16).ptr == digits + 2) {
            bytes += static_cast<char>(value);
            at += 2;
        } else {
            bytes += text[at];
        }
    }
    return bytes;
}

/// Returns the first line of `rest` and removes it.
std::string_view nextLine(std::string_view &rest)
{
    const std::size_t end = rest.find('\n');
    const std::string_view line = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    return line;
}

} // namespace

std::string trashInfoText(std::string_view origin, const QDateTime &deleted)
{
    const std::string date = deleted.toLocalTime().toString(u"yyyy-MM-dd'T'HH:mm:ss").toStdString();
    std::string text(group);
    text.append("\n").append(pathKey).append(percentEncoded(origin));
    return text.append("\nDeletionDate=").append(date).append("\n");
}

std::optional<std::string> originInTrashInfo(std::string_view text)
{
    if (nextLine(text) != group)
        return std::nullopt;
    while (!text.empty()) {
        const std::string_view line = nextLine(text);
        if (line.starts_with('['))
            return std::nullopt;
        if (!line.starts_with(pathKey))
            continue;
        // The first of several lines counts.
        std::string origin = percentDecoded(line.substr(pathKey.size()));
        if (origin.empty() || origin.find('\0') != std::string::npos)
            return std::nullopt;
        return origin;
    }
    return std::nullopt;
}

std::optional<QDateTime> deletionInTrashInfo(std::string_view text)
{
    constexpr std::string_view dateKey = "DeletionDate=";
    while (!text.empty()) {
        const std::string_view line = nextLine(text);
        if (!line.starts_with(dateKey))
            continue;
        const std::string_view value = line.substr(dateKey.size());
        const QDateTime date = QDateTime::fromString(
            QString::fromLatin1(value.data(), static_cast<qsizetype>(value.size())).trimmed(), Qt::ISODate);
        return date.isValid() ? std::optional(date) : std::nullopt;
    }
    return std::nullopt;
}

} // namespace brellin
