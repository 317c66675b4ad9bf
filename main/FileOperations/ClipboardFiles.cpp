#include "FileOperations/ClipboardFiles.h"

#include <QList>
#include <QStringList>

#include <algorithm>
#include <array>
#include <cctype>
#include <string>
#include <string_view>

#include <unistd.h>

namespace brellin {

namespace {

constexpr std::string_view scheme = "file://";

bool isUnreserved(unsigned char byte)
{
    return std::isalnum(byte) != 0 ||
           std::string_view("-._~/!$&'()*+,;=:@").find(static_cast<char>(byte)) != std::string_view::npos;
}

int digitOf(char letter)
{
    if (letter >= '0' && letter <= '9')
        return letter - '0';
    const char lower = static_cast<char>(letter | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/// Decodes percent-encoding; keeps a "%" that is not followed by two hex digits.
std::string decoded(std::string_view text)
{
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool complete =
            text[i] == '%' && i + 2 < text.size() && digitOf(text[i + 1]) >= 0 && digitOf(text[i + 2]) >= 0;
        if (complete) {
            bytes += static_cast<char>(digitOf(text[i + 1]) * 16 + digitOf(text[i + 2]));
            i += 2;
        } else {
            bytes += text[i];
        }
    }
    return bytes;
}

std::string hostName()
{
    std::array<char, 256> name{};
    return ::gethostname(name.data(), name.size() - 1) == 0 ? std::string(name.data()) : std::string();
}

bool isThisMachine(std::string_view host)
{
    return host.empty() || host == "localhost" || host == hostName();
}

QByteArray joined(const std::vector<Location> &entries, const char *end)
{
    QByteArray text;
    for (const Location &entry : entries)
        text += fileUrl(entry) + end;
    return text;
}

std::vector<QByteArray> linesOf(const QByteArray &text)
{
    std::vector<QByteArray> lines;
    for (const QByteArray &line : text.split('\n')) {
        const QByteArray trimmed = line.trimmed();
        if (!trimmed.isEmpty() && !trimmed.startsWith('#'))
            lines.push_back(trimmed);
    }
    return lines;
}

std::vector<Location> entriesIn(const std::vector<QByteArray> &urls)
{
    std::vector<Location> entries;
    for (const QByteArray &url : urls) {
        if (const std::optional<Location> entry = locationOfFileUrl(url))
            entries.push_back(*entry);
    }
    return entries;
}

std::optional<ClipboardFiles> fromGnome(const QByteArray &text)
{
    std::vector<QByteArray> lines = linesOf(text);
    if (lines.empty() || (lines.front() != "cut" && lines.front() != "copy"))
        return std::nullopt;
    const bool cut = lines.front() == "cut";
    lines.erase(lines.begin());
    return ClipboardFiles{cut ? ClipboardFiles::Purpose::Cut : ClipboardFiles::Purpose::Copy, entriesIn(lines)};
}

} // namespace

QByteArray fileUrl(const Location &entry)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    QByteArray url(scheme.data(), static_cast<qsizetype>(scheme.size()));
    for (const char letter : entry.native()) {
        const auto byte = static_cast<unsigned char>(letter);
        if (isUnreserved(byte))
            url += letter;
        else
            url.append('%').append(digits[byte >> 4U]).append(digits[byte & 15U]);
    }
    return url;
}

std::optional<Location> locationOfFileUrl(const QByteArray &url)
{
    std::string_view text(url.constData(), static_cast<std::size_t>(url.size()));
    // Some programs write "file:/path" without the slashes of an empty host.
    if (text.starts_with("file:/") && !text.starts_with(scheme))
        text.remove_prefix(std::string_view("file:").size());
    else if (text.starts_with(scheme)) {
        text.remove_prefix(scheme.size());
        const std::size_t path = text.find('/');
        if (path == std::string_view::npos || !isThisMachine(text.substr(0, path)))
            return std::nullopt;
        text.remove_prefix(path);
    } else {
        return std::nullopt;
    }
    const std::string bytes = decoded(text);
    if (bytes.find('\0') != std::string::npos)
        return std::nullopt;
    return standardised(bytes);
}

std::vector<std::pair<QByteArray, QByteArray>> clipboardFormsOf(const ClipboardFiles &files)
{
    const bool cut = files.purpose == ClipboardFiles::Purpose::Cut;
    QByteArray gnome = (cut ? QByteArray("cut\n") : QByteArray("copy\n")) + joined(files.entries, "\n");
    gnome.chop(1); // Others would parse a trailing newline as an empty entry.
    return {{clipboardForms::uriList, joined(files.entries, "\r\n")},
            {clipboardForms::gnome, gnome},
            {clipboardForms::kde, cut ? "1" : "0"},
            {clipboardForms::text, pathText(files.entries).toUtf8()}};
}

std::optional<ClipboardFiles> clipboardFilesFrom(const std::function<QByteArray(const char *form)> &form)
{
    std::optional<ClipboardFiles> files = fromGnome(form(clipboardForms::gnome));
    if (!files) {
        const bool cut = form(clipboardForms::kde).startsWith('1');
        files = ClipboardFiles{cut ? ClipboardFiles::Purpose::Cut : ClipboardFiles::Purpose::Copy,
                               entriesIn(linesOf(form(clipboardForms::uriList)))};
    }
    return files->entries.empty() ? std::nullopt : files;
}

QString pathText(const std::vector<Location> &entries)
{
    QStringList paths;
    for (const Location &entry : entries)
        paths << shown(entry);
    return paths.join(u'\n');
}

} // namespace brellin
