#include "Agent/Analysis/AnalysisReasons.h"

#include "Base/German.h"
#include "Disk/FileTypes.h"

#include <algorithm>
#include <array>

namespace brellin {

namespace {

QString quoted(const QString &text)
{
    return u'„' + text + u'“';
}

/// "12 Dateien, meist Bilder, 3,4 MB"
QString contentText(const FolderUsage &usage)
{
    if (usage.files == 0)
        return QStringLiteral("keine Dateien");
    QString text = counted(usage.files, QStringLiteral("Datei"), QStringLiteral("Dateien"));
    const std::optional<QString> category = usage.dominantCategory();
    if (category && *category != u"Sonstige" && usage.files > 1)
        text += QStringLiteral(", meist ") + *category;
    return text + QStringLiteral(", ") + sizeText(usage.bytes);
}

QString neverOpened(const QString &content, int days)
{
    return QStringLiteral("Nie geöffnet · ") + content + QStringLiteral(", unverändert seit ") +
           german().toString(days) + QStringLiteral(" Tagen – kann weg?");
}

/// The noun for one file of its category.
QString nounFor(const Location &file)
{
    struct Noun {
        const char16_t *category;
        const char16_t *one;
    };
    constexpr auto nouns = std::to_array<Noun>({{u"Bilder", u"Bild"},
                                                {u"Videos", u"Video"},
                                                {u"Musik", u"Musikdatei"},
                                                {u"Archive", u"Archivdatei"},
                                                {u"Dokumente", u"Dokument"},
                                                {u"Programme", u"Programm"}});
    const QString &category = fileCategory(extensionOf(file.filename().native()));
    for (const Noun &noun : nouns) {
        if (category == noun.category)
            return QString::fromUtf16(noun.one);
    }
    return QStringLiteral("Datei");
}

} // namespace

QString backupReason(const FolderUsage &usage, Instant modified)
{
    return QStringLiteral("Alte Sicherung/Archiv/Temp · ") + contentText(usage) +
           QStringLiteral(" · zuletzt geändert ") + longDate(usage.newest.value_or(modified));
}

QString neverOpenedReason(const FolderUsage &usage, int days)
{
    return neverOpened(contentText(usage), days);
}

QString neverOpenedReason(const FileAttributes &file, int days)
{
    return neverOpened(sizeText(file.size), days);
}

QString unusedReason(const Location &folder, int days, int limit)
{
    // The plural is always right: the limit must have passed in whole days, so it is never one day.
    return QStringLiteral("Sammelordner ") + quoted(shownName(folder)) + QStringLiteral(" · zuletzt benutzt vor ") +
           german().toString(days) + QStringLiteral(" Tagen · seit über ") + german().toString(std::max(limit, 2)) +
           QStringLiteral(" Tagen nicht benutzt → Archiv");
}

QString sortingReason(const Location &file, const QString &group, GroupChoice choice, NameChange change)
{
    QString text = nounFor(file);
    if (choice == GroupChoice::ByBackupName)
        text += QStringLiteral(" (Name wie eine Sicherung)");
    text += QStringLiteral(" zum Einsortieren · nach ") + quoted(group);
    if (choice == GroupChoice::ByModel)
        text += QStringLiteral(" (KI)");
    if (change == NameChange::Cleaned)
        text += QStringLiteral(" · Name bereinigt");
    return text;
}

} // namespace brellin
