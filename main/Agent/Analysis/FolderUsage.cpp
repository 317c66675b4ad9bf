#include "Agent/Analysis/FolderUsage.h"

#include "Agent/Analysis/FileUse.h"
#include "Disk/FileTypes.h"
#include "Guard/Placeholders.h"

#include <algorithm>

namespace brellin {

namespace {

const std::array<QString, 7> &categoryNames()
{
    static const std::array<QString, 7> names{
        QStringLiteral("Bilder"),    QStringLiteral("Videos"),    QStringLiteral("Musik"),   QStringLiteral("Archive"),
        QStringLiteral("Dokumente"), QStringLiteral("Programme"), QStringLiteral("Sonstige")};
    return names;
}

void raise(std::optional<Instant> &latest, std::optional<Instant> other)
{
    if (other && (!latest || *latest < *other))
        latest = other;
}

} // namespace

void FolderUsage::add(std::string_view name, const FileAttributes &entry)
{
    links += entry.isLink() ? 1 : 0;
    if (!entry.isFile())
        return;
    ++files;
    visibleFiles += isDotName(name) ? 0 : 1;
    bytes += entry.size;
    const std::string extension = lowerExtensionOf(name);
    scripts = scripts || isScriptExtension(extension);
    opened = opened || !isNeverOpened(entry);
    raise(newest, entry.modified);
    raise(lastUse, lastUseOf(entry));
    raise(settledSince, brellin::settledSince(entry));
    const auto category = std::ranges::find(categoryNames(), fileCategory(extension));
    if (category != categoryNames().end())
        ++categories.at(static_cast<std::size_t>(category - categoryNames().begin()));
}

void FolderUsage::add(const FolderUsage &below)
{
    files += below.files;
    visibleFiles += below.visibleFiles;
    bytes += below.bytes;
    links += below.links;
    scripts = scripts || below.scripts;
    opened = opened || below.opened;
    raise(newest, below.newest);
    raise(lastUse, below.lastUse);
    raise(settledSince, below.settledSince);
    for (std::size_t i = 0; i < categories.size(); ++i)
        categories.at(i) += below.categories.at(i);
}

std::optional<QString> FolderUsage::dominantCategory() const
{
    const auto most = std::ranges::max_element(categories);
    if (*most == 0 || std::ranges::count(categories, *most) > 1)
        return std::nullopt;
    return categoryNames().at(static_cast<std::size_t>(most - categories.begin()));
}

} // namespace brellin
