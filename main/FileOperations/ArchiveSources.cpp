#include "FileOperations/ArchiveSources.h"

#include "Disk/Walk.h"

#include <algorithm>
#include <iterator>

namespace brellin {

namespace {

constexpr std::size_t mostNamed = 10;

void nameEach(const std::vector<Location> &entries, const QString &why, QStringList &lines)
{
    for (std::size_t i = 0; i < std::min(entries.size(), mostNamed); ++i)
        lines << shownName(entries[i]) + QStringLiteral(": ") + why;
    if (entries.size() > mostNamed)
        lines << QStringLiteral("… und weitere: ") + why;
}

} // namespace

ArchiveSources::ArchiveSources(const std::vector<Location> &entries, const JobControl &control)
{
    for (const Location &entry : entries)
        add(entry, control);
}

void ArchiveSources::add(const Location &entry, const JobControl &control)
{
    const Result<FileAttributes> attributes = readAttributes(entry);
    Source source{entry, attributes ? std::optional(*attributes) : std::nullopt, std::nullopt};
    if (attributes)
        count(entry, *attributes);
    if (attributes && attributes->isFolder()) {
        if (Result<TreeMark> content = TreeMark::of(entry, &control))
            source.content = *std::move(content);
        const auto each = [this](const WalkEntry &one) {
            count(one.location(), one.attributes);
            return WalkStep::Continue;
        };
        // Unreadable folders are ignored here: packing itself fails on them.
        (void)walk(entry, {.attributes = Attribute::Size}, each, &control);
    }
    m_sources.push_back(std::move(source));
}

void ArchiveSources::count(const Location &entry, const FileAttributes &attributes)
{
    m_bytes += attributes.isFile() ? attributes.size : 0;
    if (attributes.kind == EntryKind::Special && m_special.size() <= mostNamed)
        m_special.push_back(entry);
}

QStringList ArchiveSources::missingOrChanged(const JobControl &control) const
{
    QStringList lines;
    std::vector<Location> changed;
    for (const Source &source : m_sources) {
        if (source.content) {
            const Result<std::vector<Location>> now = source.content->newIn(source.place, mostNamed + 1, &control);
            if (now)
                std::ranges::copy(*now, std::back_inserter(changed));
            else
                changed.push_back(source.place);
            continue;
        }
        const Result<FileAttributes> now = readAttributes(source.place);
        if (!source.attributes || source.attributes->isFolder() || !now || now->size != source.attributes->size ||
            now->modified != source.attributes->modified)
            changed.push_back(source.place);
    }
    nameEach(m_special, QStringLiteral("Fehlt im Archiv, denn das ist keine Datei und kein Ordner."), lines);
    nameEach(
        changed,
        QStringLiteral("Wurde während des Packens geändert; im Archiv steht es vielleicht nicht, wie es jetzt ist."),
        lines);
    return lines;
}

} // namespace brellin
