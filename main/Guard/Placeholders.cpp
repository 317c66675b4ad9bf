#include "Guard/Placeholders.h"

#include "Base/German.h"
#include "Disk/FileTypes.h"

#include <algorithm>
#include <array>

namespace brellin {

namespace {

/// Strips a trailing "(2)" and the white space before it.
QStringView withoutCopyNumber(QStringView name)
{
    if (!name.endsWith(u')'))
        return name;
    qsizetype open = name.size() - 1;
    while (open > 0 && name.at(open - 1).isDigit())
        --open;
    if (open == name.size() - 1 || open == 0 || name.at(open - 1) != u'(')
        return name;
    QStringView rest = name.first(open - 1);
    while (!rest.isEmpty() && rest.back().isSpace())
        rest.chop(1);
    return rest;
}

void replaceDates(QString &text, Instant date)
{
    // Computing the local day is the expensive part, so skip it for patterns without placeholders.
    if (!text.contains(u'{'))
        return;
    const QDate day = localDay(date);
    text.replace(QLatin1StringView("{Jahr}"), day.toString(u"yyyy"));
    text.replace(QLatin1StringView("{Monat}"), day.toString(u"MM"));
    text.replace(QLatin1StringView("{Tag}"), day.toString(u"dd"));
    text.replace(QLatin1StringView("{Datum}"), day.toString(u"yyyy-MM-dd"));
}

} // namespace

QString expand(const QString &pattern, const Location &file, Instant date)
{
    const std::string name = file.filename().native();
    QString text = pattern;
    replaceDates(text, date);
    text.replace(QLatin1StringView("{Kategorie}"), fileCategory(extensionOf(name)));
    text.replace(QLatin1StringView("{Name}"), cleanFileName(shown(stemOf(name))));
    text.replace(QLatin1StringView("{Endung}"), shown(extensionOf(name)));
    return text;
}

QString cleanFileName(const QString &name)
{
    QString cleaned = name;
    // Order matters: "Foto - Kopie" keeps its dash.
    for (const QLatin1StringView mark : {QLatin1StringView(" Kopie"), QLatin1StringView(" copy"),
                                         QLatin1StringView(" - Kopie"), QLatin1StringView(" Copy")})
        cleaned.remove(mark);
    cleaned = withoutCopyNumber(cleaned).toString();
    cleaned.replace(u'_', u' ');
    return cleaned.simplified();
}

bool isScriptExtension(std::string_view extension)
{
    constexpr auto extensions = std::to_array<std::string_view>(
        {"py", "command", "sh", "zsh", "bash", "applescript", "scpt", "js", "mjs", "ts", "rb", "pl"});
    return std::ranges::find(extensions, extension) != extensions.end();
}

} // namespace brellin
