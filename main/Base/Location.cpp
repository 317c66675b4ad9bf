#include "Base/Location.h"

#include <QByteArray>
#include <QUrl>

#include <algorithm>

namespace brellin {

namespace {

constexpr QLatin1StringView urlStart("file://");

bool isValidUtf8(std::string_view bytes)
{
    const QByteArrayView view(bytes.data(), static_cast<qsizetype>(bytes.size()));
    return view.isValidUtf8();
}

} // namespace

Location standardised(const Location &location)
{
    if (isStandardised(location.native()))
        return location;
    std::error_code nowhere; // ignored: without a working folder the path stays relative, and nothing is found there
    Location absolute = location;
    if (!location.is_absolute())
        absolute = std::filesystem::absolute(location, nowhere);
    Location normal = (nowhere ? location : absolute).lexically_normal();
    if (normal.has_relative_path() && !normal.has_filename())
        normal = normal.parent_path();
    return normal;
}

bool isStandardised(std::string_view path)
{
    if (!path.starts_with('/') || path.find("//") != std::string_view::npos)
        return false;
    if (path.size() > 1 && path.ends_with('/'))
        return false;
    // Only "." and ".." components need work, and few paths contain "/.".
    for (std::size_t at = path.find("/."); at != std::string_view::npos; at = path.find("/.", at + 1)) {
        const std::string_view rest = path.substr(at + 1);
        const std::string_view component = rest.substr(0, rest.find('/'));
        if (component == "." || component == "..")
            return false;
    }
    return true;
}

bool isAtOrBelow(std::string_view location, std::string_view folder)
{
    if (folder == "/")
        return location.starts_with('/');
    return location.starts_with(folder) && (location.size() == folder.size() || location[folder.size()] == '/');
}

bool isAtOrBelow(const Location &location, const Location &folder)
{
    return isAtOrBelow(std::string_view(location.native()), std::string_view(folder.native()));
}

QString shown(std::string_view bytes)
{
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

QString shown(const Location &location)
{
    return shown(std::string_view(location.native()));
}

QString shownName(const Location &location)
{
    const std::string_view path = location.native();
    const std::string_view name = path.substr(path.rfind('/') + 1);
    return shown(name.empty() ? path : name);
}

bool isItsOwnText(const Location &location)
{
    return isValidUtf8(location.native()) && !location.native().starts_with("file://");
}

QString textOf(const Location &location)
{
    const std::string &bytes = location.native();
    if (isItsOwnText(location))
        return QString::fromStdString(bytes);
    const QByteArray encoded = QByteArray::fromStdString(bytes).toPercentEncoding("/");
    return urlStart + QString::fromLatin1(encoded);
}

Location locationFromText(const QString &text)
{
    if (!text.startsWith(urlStart))
        return text.toStdString();
    return QByteArray::fromPercentEncoding(QStringView(text).mid(urlStart.size()).toUtf8()).toStdString();
}

QString folded(const QString &text)
{
    // Folding may decompose and composing may change what folds, so compose before and after. Qt folds character by
    // character and keeps "ß", which upper case writes as two letters.
    return text.normalized(QString::NormalizationForm_C)
        .toCaseFolded()
        .replace(u'ß', u"ss"_qs)
        .normalized(QString::NormalizationForm_C);
}

std::string_view extensionOf(std::string_view name)
{
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos || dot + 1 == name.size())
        return {};
    if (name.find_first_not_of('.') > dot)
        return {};
    const std::string_view extension = name.substr(dot + 1);
    return extension.find(' ') == std::string_view::npos ? extension : std::string_view();
}

std::string_view stemOf(std::string_view name)
{
    const std::string_view extension = extensionOf(name);
    return extension.empty() ? name : name.substr(0, name.size() - extension.size() - 1);
}

std::string lowerExtensionOf(std::string_view name)
{
    std::string extension(extensionOf(name));
    std::ranges::transform(extension, extension.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; });
    return extension;
}

} // namespace brellin
