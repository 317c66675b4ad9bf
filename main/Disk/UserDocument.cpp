#include "Disk/UserDocument.h"

#include "Disk/FileTypes.h"

#include <QByteArray>

#include <algorithm>
#include <array>

namespace brellin {

namespace {

// Sorted. Ambiguous extensions count as what is common in program folders.
constexpr auto codeExtensions = std::to_array<std::string_view>(
    {"c",    "cjs",  "cpp",  "css",    "go",    "h",    "htm", "html", "java", "js",   "jsx",
     "kt",   "less", "lock", "m",      "map",   "md",   "mjs", "php",  "py",   "rb",   "rs",
     "scss", "sh",   "sql",  "svelte", "swift", "toml", "ts",  "tsx",  "vue",  "yaml", "yml"});
constexpr auto documentExtensions = std::to_array<std::string_view>(
    {"ai",  "cr2", "dng",   "doc", "docx", "epub", "heic", "indd", "key", "nef", "numbers",
     "ods", "odt", "pages", "ppt", "pptx", "psd",  "raw",  "rtf",  "xls", "xlsx"});

static_assert(std::ranges::is_sorted(codeExtensions) && std::ranges::is_sorted(documentExtensions));

} // namespace

bool isUserDocument(const Location &file)
{
    return isUserDocumentExtension(extensionOf(file.filename().native()));
}

bool isUserDocumentExtension(std::string_view extension)
{
    const std::string lower =
        QByteArray(extension.data(), static_cast<qsizetype>(extension.size())).toLower().toStdString();
    if (std::ranges::binary_search(codeExtensions, lower))
        return false;
    if (std::ranges::binary_search(documentExtensions, lower))
        return true;
    using enum TypeTrait;
    const FileType &type = fileTypeOf(lower);
    const auto isAnyOf = [&type](std::initializer_list<TypeTrait> traits) {
        return std::ranges::any_of(traits, [&type](TypeTrait trait) { return type.conformsTo(trait); });
    };
    return !isAnyOf({SourceCode, Script, Json, Xml}) && isAnyOf({Image, Movie, Audio, Pdf, Archive});
}

} // namespace brellin
