#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <QString>
#include <QStringList>
#include <QStringView>

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

/// The colour tags of files and folders, stored as a list of names in an extended attribute of the entry. English
/// palette names ("Red") are read as the German ones. Symlinks have no tags, and do not show those of their target.
namespace brellin::FileTags {

/// One tag of the palette.
struct PaletteTag {
    QStringView name;        ///< "Rot"
    QStringView english;     ///< "Red"
    std::uint32_t color = 0; ///< 0xRRGGBB
};

inline constexpr std::array<PaletteTag, 7> all{{{u"Rot", u"Red", 0xF2554D},
                                                {u"Orange", u"Orange", 0xF59A23},
                                                {u"Gelb", u"Yellow", 0xF2C61F},
                                                {u"Grün", u"Green", 0x43B463},
                                                {u"Blau", u"Blue", 0x2F86E5},
                                                {u"Lila", u"Purple", 0xA55BD6},
                                                {u"Grau", u"Gray", 0x8B9098}}};

/// The extended attribute with an entry's tags: UTF-8, separated by commas.
inline constexpr const char *attribute = "user.xdg.tags";

/// The English name of a palette tag; empty for other tags.
QString english(const QString &tag);
/// The colour of a palette tag as 0xRRGGBB; accepts both of its names.
std::optional<std::uint32_t> color(const QString &tag);
/// The German name of a palette tag; other names are returned unchanged.
QString germanName(const QString &tag);

/// The tags of an entry without repetitions; empty if there are none or they cannot be read.
QStringList tags(const Location &entry);
/// The same, parsed from the attribute's value.
QStringList tagsFromBytes(std::string_view rawXattrValue);
/// Whether the attribute's value contains this tag, under either of its names.
bool holdsTag(std::string_view rawXattrValue, const QString &tag);
/// The attribute's value; empty if there is none or it cannot be read.
std::string rawTags(const Location &entry);

/// Adds the tag to the entries that lack it or, if all have it, removes it from all. Preserves other tags byte for
/// byte. Tries every entry; the failure names those that could not be changed.
Result<void> toggle(const QString &tag, const std::vector<Location> &entries);
Result<void> add(const QString &tag, const std::vector<Location> &entries);
Result<void> remove(const QString &tag, const std::vector<Location> &entries);
/// Removes all tags from the entries, including those outside the palette.
Result<void> removeAll(const std::vector<Location> &entries);

} // namespace brellin::FileTags
