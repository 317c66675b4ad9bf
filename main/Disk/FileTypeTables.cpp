#include "Disk/FileTypeTables.h"

#include <algorithm>
#include <array>

namespace brellin {

namespace {

using enum TypeTrait;

constexpr std::uint32_t source = SourceCode | Text;
constexpr std::uint32_t script = source | bits(Script);

// Sorted by extension. 0: a known type without relevant traits.
constexpr auto corrections = std::to_array<CorrectedType>({
    {"3fr", bits(Image), "image/x-hasselblad-3fr", u"Hasselblad-Rohbild"},
    {"apk", bits(Application), "application/vnd.android.package-archive", u"Android-Paket"},
    {"app", bits(Application), "application/x-app-bundle", u"Programm"},
    {"applescript", script, "text/x-applescript", u"AppleScript-Textdatei"},
    {"appx", bits(Application), "application/appx", u"Windows-Programmpaket"},
    {"avif", bits(Image), "image/avif", u"AVIF-Bild"},
    {"bash", script, "application/x-shellscript", u"Shell-Skript"},
    {"bat", script, "application/x-bat", u"Stapelverarbeitungsdatei"},
    {"caf", bits(Audio), "audio/x-caf", u"Core-Audio-Datei"},
    {"cfg", bits(Text), "text/plain", u"Konfigurationsdatei"},
    {"cjs", script, "application/javascript", u"JavaScript-Programm"},
    {"cmd", script, "application/x-bat", u"Stapelverarbeitungsdatei"},
    {"command", script, "application/x-shellscript", u"Shell-Skript"},
    {"conf", bits(Text), "text/plain", u"Konfigurationsdatei"},
    {"cts", source, "text/x-typescript", u"TypeScript-Quelltext"},
    {"desktop", bits(Application), "application/x-desktop", u"Programmstarter"},
    {"erf", bits(Image), "image/x-epson-erf", u"Epson-Rohbild"},
    {"fish", script, "application/x-fishscript", u"Shell-Skript"},
    {"gpg", 0, "application/pgp-encrypted", u"Verschlüsselte Datei"},
    {"hdr", bits(Image), "image/vnd.radiance", u"Radiance-Bild"},
    {"iiq", bits(Image), "image/x-phaseone-iiq", u"Phase-One-Rohbild"},
    {"indd", 0, "application/x-indesign", u"InDesign-Dokument"},
    {"ini", bits(Text), "text/plain", u"Konfigurationsdatei"},
    {"ipa", bits(Application), "application/x-ios-app", u"iOS-Programm"},
    {"jl", source, "text/x-julia", u"Julia-Quelltext"},
    {"json5", Json | Text, "application/json5", u"JSON-Dokument"},
    {"jsonc", Json | Text, "application/json", u"JSON-Dokument"},
    {"jsonl", Json | Text, "application/jsonl", u"JSON-Dokument"},
    {"jsx", script, "application/javascript", u"JavaScript-Programm"},
    {"key", bits(Presentation), "application/vnd.apple.keynote", u"Keynote-Präsentation"},
    {"ksh", script, "application/x-shellscript", u"Shell-Skript"},
    {"less", bits(Text), "text/x-less", u"Less-Stilvorlage"},
    {"m", source, "text/x-objcsrc", u"Objective-C-Quelltext"},
    {"m3u", bits(Audio), "audio/x-mpegurl", u"Wiedergabeliste"},
    {"m3u8", bits(Audio), "audio/x-mpegurl", u"Wiedergabeliste"},
    {"m4r", bits(Audio), "audio/x-m4r", u"MPEG-4-Klingelton"},
    {"mm", source, "text/x-objc++src", u"Objective-C++-Quelltext"},
    {"mpkg", bits(Application), "application/x-installer-package", u"Installationspaket"},
    {"msi", bits(Application), "application/x-msi", u"Windows-Installationspaket"},
    {"msix", bits(Application), "application/msix", u"Windows-Programmpaket"},
    {"numbers", bits(Spreadsheet), "application/vnd.apple.numbers", u"Numbers-Tabelle"},
    {"obj", 0, "model/obj", u"3D-Modell"},
    {"otf", 0, "font/otf", u"OpenType-Schrift"},
    {"pages", 0, "application/vnd.apple.pages", u"Pages-Dokument"},
    {"pkg", bits(Application), "application/x-installer-package", u"Installationspaket"},
    {"plist", 0, "application/x-plist", u"Eigenschaftsliste"},
    {"pm", script, "application/x-perl", u"Perl-Modul"},
    {"ps1", script, "application/x-powershell", u"PowerShell-Skript"},
    {"psb", bits(Image), "image/vnd.adobe.photoshop", u"Photoshop-Bild"},
    {"r", source, "text/x-r", u"R-Quelltext"},
    {"run", bits(Application), "application/x-installer", u"Installationsprogramm"},
    {"scpt", bits(Script), "application/x-applescript", u"AppleScript-Datei"},
    {"sig", 0, "application/pgp-signature", u"Signatur"},
    {"sitx", bits(Archive), "application/x-stuffitx", u"StuffIt-Archiv"},
    {"sparsebundle", bits(Archive), "application/x-sparsebundle", u"Mitwachsendes Datenträgerabbild"},
    {"sparseimage", bits(Archive), "application/x-sparseimage", u"Mitwachsendes Datenträgerabbild"},
    {"srw", bits(Image), "image/x-samsung-srw", u"Samsung-Rohbild"},
    {"svelte", source, "text/x-svelte", u"Svelte-Komponente"},
    {"swift", source, "text/x-swift", u"Swift-Quelltext"},
    {"toast", bits(Archive), "application/x-toast", u"Datenträgerabbild"},
    {"toml", bits(Text), "application/toml", u"TOML-Dokument"},
    {"ts", source, "text/x-typescript", u"TypeScript-Quelltext"},
    {"tsx", source, "text/x-typescript", u"TypeScript-Quelltext"},
    {"vb", source, "text/x-vb", u"Visual-Basic-Quelltext"},
    {"vue", source, "text/x-vue", u"Vue-Komponente"},
    {"webloc", 0, "application/x-webloc", u"Internet-Verweis"},
    {"zsh", script, "application/x-shellscript", u"Shell-Skript"},
});
static_assert(std::ranges::is_sorted(corrections, {}, &CorrectedType::extension));

// Archives are listed explicitly, since many document formats inherit from application/zip. Sorted, as are the lists
// below; they contain the names of several database versions.
constexpr auto archives = std::to_array<std::string_view>({
    "application/gzip",
    "application/vnd.efi.img",
    "application/vnd.efi.iso",
    "application/vnd.ms-cab-compressed",
    "application/vnd.rar",
    "application/x-7z-compressed",
    "application/x-ace",
    "application/x-alz",
    "application/x-apple-diskimage",
    "application/x-archive",
    "application/x-arj",
    "application/x-brotli",
    "application/x-bzip",
    "application/x-bzip-compressed-tar",
    "application/x-bzip2",
    "application/x-bzip2-compressed-tar",
    "application/x-bzip3",
    "application/x-cd-image",
    "application/x-compress",
    "application/x-compressed-iso",
    "application/x-compressed-tar",
    "application/x-cpio",
    "application/x-cpio-compressed",
    "application/x-lha",
    "application/x-lrzip",
    "application/x-lrzip-compressed-tar",
    "application/x-lz4",
    "application/x-lz4-compressed-tar",
    "application/x-lzip",
    "application/x-lzip-compressed-tar",
    "application/x-lzma",
    "application/x-lzma-compressed-tar",
    "application/x-lzop",
    "application/x-ms-wim",
    "application/x-raw-disk-image",
    "application/x-raw-disk-image-xz-compressed",
    "application/x-stuffit",
    "application/x-tar",
    "application/x-tarz",
    "application/x-tzo",
    "application/x-xar",
    "application/x-xz",
    "application/x-xz-compressed-tar",
    "application/x-zoo",
    "application/x-zstd-compressed-tar",
    "application/zip",
    "application/zstd",
});

constexpr auto applications = std::to_array<std::string_view>({
    "application/vnd.appimage",
    "application/vnd.debian.binary-package",
    "application/vnd.flatpak",
    "application/vnd.flatpak.ref",
    "application/vnd.microsoft.portable-executable",
    "application/vnd.snap",
    "application/x-iso9660-appimage",
    "application/x-java-archive",
    "application/x-ms-dos-executable",
    "application/x-msdownload",
    "application/x-msi",
    "application/x-rpm",
    "application/x-source-rpm",
});

constexpr auto imagesByOtherName = std::to_array<std::string_view>({
    "application/illustrator",
    "application/x-krita",
});

constexpr auto moviesByOtherName = std::to_array<std::string_view>({
    "application/mxf",
    "application/vnd.ms-asf",
    "application/vnd.rn-realmedia",
    "application/vnd.rn-realmedia-vbr",
});

constexpr auto presentationWords =
    std::to_array<std::string_view>({"ms-powerpoint", "opendocument.presentation", "presentationml", "xml.impress"});
constexpr auto spreadsheetWords = std::to_array<std::string_view>(
    {"gnumeric", "lotus-1-2-3", "ms-excel", "opendocument.spreadsheet", "spreadsheetml", "xml.calc"});

// Source code types that do not inherit from C in the database, unlike C++, Java and others.
constexpr auto sources = std::to_array<std::string_view>({
    "application/sql",    "application/vnd.coffeescript",
    "application/x-php",  "text/rust",
    "text/tcl",           "text/x-adasrc",
    "text/x-cmake",       "text/x-cobol",
    "text/x-common-lisp", "text/x-csrc",
    "text/x-dart",        "text/x-eiffel",
    "text/x-elixir",      "text/x-emacs-lisp",
    "text/x-erlang",      "text/x-fortran",
    "text/x-go",          "text/x-haskell",
    "text/x-kotlin",      "text/x-makefile",
    "text/x-meson",       "text/x-modelica",
    "text/x-nim",         "text/x-objcsrc",
    "text/x-ocaml",       "text/x-pascal",
    "text/x-qml",         "text/x-scala",
    "text/x-scheme",      "text/x-systemverilog",
    "text/x-vala",        "text/x-verilog",
    "text/x-vhdl",
});

static_assert(std::ranges::is_sorted(archives) && std::ranges::is_sorted(applications) &&
              std::ranges::is_sorted(sources));

bool hasAny(std::string_view name, std::span<const std::string_view> words)
{
    return std::ranges::any_of(words, [name](std::string_view word) { return name.find(word) != name.npos; });
}

} // namespace

std::span<const CorrectedType> correctedTypes()
{
    return corrections;
}

std::uint32_t namedTraits(std::string_view name)
{
    std::uint32_t traits = 0;
    const auto add = [&traits](TypeTrait trait, bool holds) { traits |= holds ? bits(trait) : 0; };
    add(Image, name.starts_with("image/") || std::ranges::binary_search(imagesByOtherName, name));
    add(Movie, name.starts_with("video/") || std::ranges::binary_search(moviesByOtherName, name));
    add(Audio, name.starts_with("audio/"));
    add(Archive, std::ranges::binary_search(archives, name));
    add(Pdf, name == "application/pdf");
    add(Presentation, hasAny(name, presentationWords));
    add(Spreadsheet, hasAny(name, spreadsheetWords));
    add(Text, name.starts_with("text/"));
    add(SourceCode, std::ranges::binary_search(sources, name));
    add(Script, name == "application/x-php" || name == "text/tcl" || name == "application/vnd.coffeescript");
    add(Json, name == "application/json" || name.ends_with("+json"));
    add(Xml, name == "application/xml" || name.ends_with("+xml"));
    add(Application, std::ranges::binary_search(applications, name));
    return traits;
}

} // namespace brellin
