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

/// The colour tags of files and folders. They are stored with the entry itself, as a list of names; a name from the palette
/// that an English system wrote ("Red") is read as the German one. Links carry no tags, and never show their target's.
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

/// The extended attribute that holds an entry's tags, separated by commas, in UTF-8.
inline constexpr const char *attribute = "user.xdg.tags";

/// The English name of a palette tag; empty for any other.
QString english(const QString &tag);
/// The colour of a palette tag as 0xRRGGBB, under either of its names.
std::optional<std::uint32_t> color(const QString &tag);
/// The palette's German name for its English one; any other name as it is.
QString germanName(const QString &tag);

/// The tags of an entry, each once; empty when there are none or they cannot be read.
QStringList tags(const Location &entry);
/// The same from the attribute's bytes.
QStringList tagsFromBytes(std::string_view rawXattrValue);
/// Whether the attribute's bytes hold this tag, under either of its names.
bool holdsTag(std::string_view rawXattrValue, const QString &tag);
/// The attribute's bytes of an entry; empty when there are none or they cannot be read.
std::string rawTags(const Location &entry);

/// Gives the tag to those entries that lack it or, where all carry it, takes it from all. Other tags stay, byte for byte. Every
/// entry is tried; the failure names those that could not be changed.
Result<void> toggle(const QString &tag, const std::vector<Location> &entries);
Result<void> add(const QString &tag, const std::vector<Location> &entries);
Result<void> remove(const QString &tag, const std::vector<Location> &entries);
/// Takes all tags from the entries, those outside the palette too.
Result<void> removeAll(const std::vector<Location> &entries);

} // namespace brellin::FileTags
