#include "Features/PreviewFacts.h"

#include "Base/German.h"
#include "Base/RecentDate.h"
#include "Disk/FileTypes.h"

#include <QDateTime>

#include <cmath>

namespace brellin {

namespace {

QString kindOf(const Location &entry, const FileAttributes &attributes)
{
    if (attributes.isLink())
        return QStringLiteral("Verweis");
    if (attributes.kind == EntryKind::Special)
        return QStringLiteral("Sonderdatei");
    if (attributes.isFolder())
        return QStringLiteral("Ordner");
    const QString known = typeDescription(lowerExtensionOf(entry.filename().native()));
    return known.isEmpty() ? QStringLiteral("Datei") : known;
}

QString placeName(const Location &folder)
{
    return folder == folder.root_path() ? QStringLiteral("/") : shownName(folder);
}

} // namespace

QString lengthText(double seconds)
{
    constexpr double longest = 1e9;
    const auto whole = static_cast<qint64>(std::clamp(std::round(seconds), 0.0, longest));
    const auto padded = [](qint64 number) { return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0')); };
    const QString rest = u':' + padded(whole % 60);
    if (whole < 3600)
        return QString::number(whole / 60) + rest;
    return QString::number(whole / 3600) + u':' + padded(whole / 60 % 60) + rest;
}

PreviewContent previewBasics(const Location &entry, const FileAttributes &attributes, Instant now)
{
    PreviewContent content;
    content.state = PreviewContent::State::Loading;
    content.entry = entry;
    content.name = shownName(entry);
    content.kind = kindOf(entry, attributes);
    content.summary = content.kind;
    content.isFolder = attributes.isFolder();
    content.isLink = attributes.isLink();
    content.isSpecial = attributes.kind == EntryKind::Special;
    if (attributes.isFile())
        content.summary += u" · "_qs + sizeText(attributes.size);
    const auto add = [&](const QString &label, Instant instant) {
        content.facts.push_back({label, recentDate(instant, now), longDateTime(instant)});
    };
    if (attributes.created)
        add(QStringLiteral("Erstellt"), *attributes.created);
    add(QStringLiteral("Geändert"), attributes.modified);
    const Location folder = entry.parent_path();
    content.facts.push_back({QStringLiteral("Ort"), placeName(folder), shown(folder)});
    return content;
}

void addMediaFacts(PreviewContent &content, const QJsonObject &media)
{
    std::vector<PreviewFact> facts;
    const int width = media.value(u"width").toInt();
    const int height = media.value(u"height").toInt();
    if (width > 0 && height > 0)
        facts.push_back({QStringLiteral("Abmessungen"),
                         QStringLiteral("%1 × %2").arg(german().toString(width), german().toString(height)),
                         {}});
    const QDateTime taken = QDateTime::fromString(media.value(u"taken").toString().left(19), Qt::ISODate);
    if (taken.isValid())
        facts.push_back(
            {QStringLiteral("Aufgenommen"), german().toString(taken, QStringLiteral("d. MMMM yyyy, HH:mm")), {}});
    if (const QString camera = media.value(u"camera").toString(); !camera.isEmpty())
        facts.push_back({QStringLiteral("Kamera"), camera, {}});
    if (const double seconds = media.value(u"seconds").toDouble(); seconds > 0)
        facts.push_back({QStringLiteral("Dauer"), lengthText(seconds), {}});
    if (const int pages = media.value(u"pages").toInt(); pages > 0)
        content.summary += u" · "_qs + counted(pages, QStringLiteral("Seite"), QStringLiteral("Seiten"));
    content.facts.insert(content.facts.begin(), facts.begin(), facts.end());
}

} // namespace brellin
