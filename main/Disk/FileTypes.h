#pragma once

#include <QString>

#include <cstdint>
#include <string_view>

namespace brellin {

/// Traits of a file type. A type may have several: a script is source code and text.
enum class TypeTrait : std::uint32_t {
    Image = 1u << 0,
    Movie = 1u << 1,
    Audio = 1u << 2,
    Archive = 1u << 3,
    Pdf = 1u << 4,
    Presentation = 1u << 5,
    Spreadsheet = 1u << 6,
    Text = 1u << 7,
    SourceCode = 1u << 8,
    Script = 1u << 9,
    Json = 1u << 10,
    Xml = 1u << 11,
    Application = 1u << 12
};

/// The type of an extension.
struct FileType {
    bool known = false;       ///< false: unknown extension, other members are empty
    std::uint32_t traits = 0; ///< `TypeTrait` bits
    QString mimeName;         ///< e.g. "application/pdf"

    bool conformsTo(TypeTrait trait) const { return (traits & static_cast<std::uint32_t>(trait)) != 0; }
};

/// The type of an extension (without dot, case-insensitive), from the shared MIME database and a table of corrections.
/// Cached and thread-safe.
const FileType &fileTypeOf(std::string_view extension);

/// The German description of an extension's type ("PDF-Dokument"); empty if there is none.
QString typeDescription(std::string_view extension);

/// The German category of an extension: "Bilder", "Videos", "Musik", "Archive", "Dokumente", "Programme" or "Sonstige".
/// The reference stays valid.
const QString &fileCategory(std::string_view extension);

} // namespace brellin
