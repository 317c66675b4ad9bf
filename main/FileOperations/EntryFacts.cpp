#include "FileOperations/EntryFacts.h"

#include "Base/German.h"
#include "Features/FileTags.h"
#include "Features/PreviewFacts.h"
#include "FileOperations/OperationOutcome.h"

#include <QFileInfo>

#include <algorithm>
#include <array>
#include <set>
#include <utility>

namespace brellin {

namespace {

/// A readable entry.
struct Entry {
    Location location;
    FileAttributes attributes;
};

struct PermissionGroup {
    const char *title;
    int shift;
};
constexpr std::array<PermissionGroup, 3> groups{{{"Eigentümer", 6}, {"Gruppe", 3}, {"Andere", 0}}};

QString placeOf(const std::vector<Entry> &entries)
{
    const Location folder = entries.front().location.parent_path();
    const bool shared =
        std::ranges::all_of(entries, [&folder](const Entry &one) { return one.location.parent_path() == folder; });
    return shared ? shown(folder) : QStringLiteral("verschiedene Ordner");
}

QString kindsOf(const std::vector<Entry> &entries)
{
    const auto folders = std::ranges::count_if(entries, [](const Entry &one) { return one.attributes.isFolder(); });
    const auto links = std::ranges::count_if(entries, [](const Entry &one) { return one.attributes.isLink(); });
    const auto files = std::ssize(entries) - folders - links;
    QStringList parts;
    if (folders > 0)
        parts << counted(folders, QStringLiteral("Ordner"), QStringLiteral("Ordner"));
    if (files > 0)
        parts << counted(files, QStringLiteral("Datei"), QStringLiteral("Dateien"));
    if (links > 0)
        parts << counted(links, QStringLiteral("Verweis"), QStringLiteral("Verweise"));
    return parts.join(QStringLiteral(", "));
}

/// The target of a link, and whether it exists. Blocks if its volume does not respond.
PreviewFact targetFact(const Location &link)
{
    std::error_code failed;
    const Location target = std::filesystem::read_symlink(link, failed);
    if (failed)
        return {QStringLiteral("Ziel"), QStringLiteral("nicht lesbar"), {}};
    const Location absolute = standardised(link.parent_path() / target);
    const QString text = shown(target);
    return {QStringLiteral("Ziel"), entryExists(absolute) ? text : QStringLiteral("%1 (gibt es nicht)").arg(text),
            shown(absolute)};
}

void addPermissions(EntryFacts &facts, const std::vector<Entry> &entries)
{
    const FileAttributes &first = entries.front().attributes;
    const bool alike = std::ranges::all_of(entries, [&first](const Entry &one) {
        return one.attributes.mode == first.mode && one.attributes.kind == first.kind;
    });
    if (first.isLink())
        return;
    if (!alike) {
        facts.rows.push_back({QStringLiteral("Rechte"), QStringLiteral("verschieden"), {}});
        return;
    }
    const QFileInfo owners(shown(entries.front().location));
    const std::array<QString, 3> names{owners.owner(), owners.group(), QString()};
    for (std::size_t i = 0; i < groups.size(); ++i) {
        QString text = permissionText(first.mode >> groups.at(i).shift & 7U, first.kind);
        if (entries.size() == 1 && !names.at(i).isEmpty())
            text = names.at(i) + u": "_qs + text;
        facts.rows.push_back({QString::fromUtf8(groups.at(i).title), text, modeText(first.mode, first.kind)});
    }
}

void addDates(EntryFacts &facts, const std::vector<Entry> &entries)
{
    const FileAttributes &first = entries.front().attributes;
    if (entries.size() == 1) {
        if (first.created)
            facts.rows.push_back({QStringLiteral("Erstellt"), longDateTime(*first.created), {}});
        facts.rows.push_back({QStringLiteral("Geändert"), longDateTime(first.modified), {}});
        facts.rows.push_back({QStringLiteral("Zuletzt gelesen"), longDateTime(first.accessed), {}});
        return;
    }
    const auto [oldest, newest] =
        std::ranges::minmax(entries, {}, [](const Entry &one) { return one.attributes.modified; });
    const QString from = longDateTime(oldest.attributes.modified);
    const QString until = longDateTime(newest.attributes.modified);
    facts.rows.push_back(
        {QStringLiteral("Geändert"), from == until ? from : QStringLiteral("%1 bis %2").arg(from, until), {}});
}

void addTags(EntryFacts &facts, const std::vector<Entry> &entries)
{
    facts.taggable = std::ranges::none_of(entries, [](const Entry &one) { return one.attributes.isLink(); });
    std::vector<QStringList> each;
    each.reserve(entries.size());
    for (const Entry &entry : entries)
        each.push_back(entry.attributes.isLink() ? QStringList() : FileTags::tags(entry.location));
    QStringList seen;
    for (const QStringList &tags : each)
        for (const QString &tag : tags)
            if (!seen.contains(tag))
                seen << tag;
    for (const QString &tag : std::as_const(seen))
        (std::ranges::all_of(each, [&tag](const QStringList &tags) { return tags.contains(tag); }) ? facts.tags
                                                                                                   : facts.someTags)
            << tag;
}

void addSingle(EntryFacts &facts, const Entry &entry)
{
    const PreviewContent basics = previewBasics(entry.location, entry.attributes, entry.attributes.modified);
    facts.name = basics.name;
    facts.kind = basics.kind;
    facts.folder = entry.attributes.isFolder();
    if (entry.attributes.isFile())
        facts.digestible = entry.attributes.size;
    if (entry.attributes.isLink())
        facts.rows.push_back(targetFact(entry.location));
    if (entry.attributes.isFile() && entry.attributes.diskSize != entry.attributes.size)
        facts.rows.push_back({QStringLiteral("Belegt"), sizeText(entry.attributes.diskSize), {}});
    if (entry.attributes.isFile() && entry.attributes.links > 1)
        facts.rows.push_back({QStringLiteral("Hardlinks"),
                              QStringLiteral("%1 Namen für denselben Inhalt").arg(entry.attributes.links),
                              {}});
}

} // namespace

QString permissionText(std::uint32_t bits, EntryKind kind)
{
    QStringList words;
    if (bits & 4U)
        words << QStringLiteral("lesen");
    if (bits & 2U)
        words << QStringLiteral("schreiben");
    if (bits & 1U)
        words << (kind == EntryKind::Folder ? QStringLiteral("öffnen") : QStringLiteral("ausführen"));
    return words.isEmpty() ? QStringLiteral("kein Zugriff") : words.join(QStringLiteral(", "));
}

QString modeText(std::uint32_t mode, EntryKind kind)
{
    QString text = kind == EntryKind::Folder ? QStringLiteral("d") : QStringLiteral("-");
    // setuid, setgid and sticky replace the "x" of their group.
    constexpr std::array<std::pair<char, char>, 3> special{{{'s', 'S'}, {'s', 'S'}, {'t', 'T'}}};
    for (unsigned i = 0; i < groups.size(); ++i) {
        const std::uint32_t bits = mode >> groups.at(i).shift & 7U;
        const bool marked = mode & (04000U >> i);
        text += bits & 4U ? u'r' : u'-';
        text += bits & 2U ? u'w' : u'-';
        const char run = bits & 1U ? 'x' : '-';
        text += QLatin1Char(marked ? (bits & 1U ? special.at(i).first : special.at(i).second) : run);
    }
    return QStringLiteral("%1 (%2)").arg(text, QString::number(mode, 8));
}

EntryFacts readEntryFacts(const std::vector<Location> &entries, const JobControl &control)
{
    EntryFacts facts;
    std::vector<Entry> read;
    for (const Location &entry : entries) {
        if (control.cancelled())
            return facts;
        if (const Result<FileAttributes> attributes = readAttributes(entry))
            read.push_back({entry, *attributes});
        else
            facts.failures << EntryFailure{entry, attributes.error()};
    }
    facts.name = entries.size() == 1
                     ? shownName(entries.front())
                     : counted(std::ssize(entries), QStringLiteral("Element"), QStringLiteral("Elemente"));
    if (read.empty())
        return facts;
    facts.kind = kindsOf(read);
    facts.onlyLinks = std::ranges::all_of(read, [](const Entry &one) { return one.attributes.isLink(); });
    facts.rows.push_back({QStringLiteral("Ort"), placeOf(read), {}});
    if (entries.size() == 1)
        addSingle(facts, read.front());
    addDates(facts, read);
    addPermissions(facts, read);
    addTags(facts, read);
    return facts;
}

} // namespace brellin
