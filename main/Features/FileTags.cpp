#include "Features/FileTags.h"

#include "Disk/FileAttributes.h"
#include "Features/TagStore.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <string>

namespace brellin::FileTags {

namespace {

/// The tags as stored; unknown ones are preserved unchanged.
using RawTags = std::vector<std::string>;

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && (text.front() == ' ' || text.front() == '\0'))
        text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\0'))
        text.remove_suffix(1);
    return text;
}

RawTags split(std::string_view value)
{
    RawTags tags;
    while (!value.empty()) {
        const std::size_t end = std::min(value.find(','), value.size());
        if (const std::string_view tag = trimmed(value.substr(0, end)); !tag.empty())
            tags.emplace_back(tag);
        value.remove_prefix(std::min(end + 1, value.size()));
    }
    return tags;
}

std::string joined(const RawTags &tags)
{
    std::string value;
    for (const std::string &tag : tags)
        value += (value.empty() ? "" : ",") + tag;
    return value;
}

const PaletteTag *paletteTag(const QString &name)
{
    const auto found =
        std::ranges::find_if(all, [&](const PaletteTag &tag) { return name == tag.name || name == tag.english; });
    return found == all.end() ? nullptr : &*found;
}

QString nameOf(const std::string &raw)
{
    return germanName(
        QString::fromUtf8(raw.data(), static_cast<qsizetype>(raw.size())).normalized(QString::NormalizationForm_C));
}

bool holds(const RawTags &tags, const QString &tag)
{
    return std::ranges::any_of(tags, [&](const std::string &raw) { return nameOf(raw) == tag; });
}

/// A name in stored form: German for the palette, without separators.
Result<QString> storable(const QString &tag)
{
    QString name = germanName(tag.trimmed().normalized(QString::NormalizationForm_C));
    if (name.isEmpty() || name.contains(u',') || name.contains(QChar(0)))
        return failure(QStringLiteral("Eine Markierung braucht einen Namen ohne Komma."));
    return name;
}

/// Changes one entry's tags; writes only if they differ.
Result<void> change(const Location &entry, const std::function<void(RawTags &)> &edit)
{
    const std::string old = TRY(readTagValue(entry));
    RawTags tags = split(old);
    const RawTags before = tags;
    edit(tags);
    return tags == before ? Result<void>() : writeTagValue(entry, joined(tags));
}

/// Tries every entry; the failure has a line „a.txt: …“ for each that failed.
Result<void> changeAll(const std::vector<Location> &entries, const std::function<void(RawTags &)> &edit)
{
    QStringList failed;
    std::error_code first;
    for (const Location &entry : entries) {
        if (const Result<void> changed = change(entry, edit); !changed) {
            failed += shownName(entry) + QStringLiteral(": ") + changed.error().message;
            first = first ? first : changed.error().code;
        }
    }
    if (!failed.empty())
        return failure(Failure{failed.join(u'\n'), first});
    return {};
}

} // namespace

QString english(const QString &tag)
{
    const PaletteTag *const known = paletteTag(tag);
    return known ? known->english.toString() : QString();
}

std::optional<std::uint32_t> color(const QString &tag)
{
    const PaletteTag *const known = paletteTag(tag);
    return known ? std::optional(known->color) : std::nullopt;
}

QString germanName(const QString &tag)
{
    const PaletteTag *const known = paletteTag(tag);
    return known ? known->name.toString() : tag;
}

QStringList tagsFromBytes(std::string_view rawXattrValue)
{
    QStringList names;
    for (const std::string &raw : split(rawXattrValue)) {
        if (const QString name = nameOf(raw); !names.contains(name))
            names += name;
    }
    return names;
}

bool holdsTag(std::string_view rawXattrValue, const QString &tag)
{
    return holds(split(rawXattrValue), germanName(tag));
}

std::string rawTags(const Location &entry)
{
    return readTagValue(entry).value_or(std::string());
}

QStringList tags(const Location &entry)
{
    return tagsFromBytes(rawTags(entry));
}

Result<void> add(const QString &tag, const std::vector<Location> &entries)
{
    const QString name = TRY(storable(tag));
    return changeAll(entries, [&](RawTags &tags) {
        if (!holds(tags, name))
            tags.push_back(name.toStdString());
    });
}

Result<void> remove(const QString &tag, const std::vector<Location> &entries)
{
    const QString name = TRY(storable(tag));
    return changeAll(entries,
                     [&](RawTags &tags) { std::erase_if(tags, [&](const auto &raw) { return nameOf(raw) == name; }); });
}

Result<void> toggle(const QString &tag, const std::vector<Location> &entries)
{
    const QString name = TRY(storable(tag));
    // Entries that cannot have tags (symlinks) do not count for "all have it".
    const bool everywhere = std::ranges::all_of(entries, [&](const Location &entry) {
        const Result<std::string> value = readTagValue(entry);
        return !value || holdsTag(*value, name);
    });
    return everywhere ? remove(name, entries) : add(name, entries);
}

Result<void> removeAll(const std::vector<Location> &entries)
{
    // Skip symlinks, which have no tags to remove.
    std::vector<Location> carriers;
    std::ranges::copy_if(entries, std::back_inserter(carriers), [](const Location &entry) {
        const Result<FileAttributes> attributes = readAttributes(entry);
        return !attributes || !attributes->isLink();
    });
    return changeAll(carriers, [](RawTags &tags) { tags.clear(); });
}

} // namespace brellin::FileTags
