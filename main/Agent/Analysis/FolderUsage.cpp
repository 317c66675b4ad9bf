#include "Agent/Analysis/FolderUsage.h"

#include "Disk/FileTypes.h"
#include "Guard/Placeholders.h"

#include <algorithm>

namespace brellin {

namespace {

constexpr std::chrono::hours firstDay{24};

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

int daysBetween(Instant earlier, Instant now)
{
    return earlier < now ? static_cast<int>(std::chrono::floor<std::chrono::days>(now - earlier).count()) : 0;
}

Instant lastUseOf(const FileAttributes &file)
{
    return std::max(file.accessed, file.modified);
}

Instant settledSince(const FileAttributes &file)
{
    return std::max(lastUseOf(file), file.created.value_or(file.modified));
}

bool isNeverOpened(const FileAttributes &file)
{
    // Copying preserves the modification time; one later than the arrival means the user changed the file.
    const Instant came = file.created.value_or(file.modified);
    return file.accessed <= std::max(came, file.modified) + firstDay && file.modified <= came + firstDay;
}

bool isLongerAgo(Instant earlier, int days, Instant now)
{
    // In floating-point seconds: 300 years in nanoseconds overflow.
    return std::chrono::duration<double>(now - earlier).count() > 86400.0 * days;
}

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
