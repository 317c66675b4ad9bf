#include "Disk/FileTypes.h"

#include "Disk/UserDocument.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace brellin {
namespace {

struct CategoryRow {
    const char *category;
    std::vector<const char *> extensions;
};

TEST(FileTypesTest, putsExtensionsIntoCategories)
{
    const CategoryRow rows[] = {
        {"Bilder",
         {"jpg", "JPEG", "png", "heic", "svg", "cr2", "cr3", "nef", "raw", "psd", "ai", "webp", "avif", "eps"}},
        {"Videos", {"mp4", "mov", "mkv", "avi", "webm", "mts", "wmv", "rm"}},
        {"Musik", {"mp3", "m4a", "flac", "wav", "ogg", "mid", "caf", "m3u"}},
        {"Archive", {"zip", "rar", "7z", "dmg", "gz", "tar", "tgz", "bz2", "xz", "zst", "iso", "cab", "img"}},
        {"Dokumente",
         {"pdf", "doc", "docx", "pages", "numbers", "key", "xls", "xlsx",  "ppt", "pptx", "odt", "ods", "odp", "txt",
          "rtf", "md",  "csv",  "html",  "json",    "xml", "ts",  "swift", "py",  "cpp",  "log", "ini", "fodt"}},
        {"Programme",
         {"app", "pkg", "exe", "msi", "deb", "rpm", "AppImage", "flatpakref", "snap", "jar", "apk", "run"}},
        {"Sonstige",
         {"", "xyzzy", "bin", "epub", "ttf", "otf", "torrent", "crdownload", "plist", "obj", "pdf ", "\xff", "a/b",
          "eine-endung-die-laenger-ist-als-alle-bekannten-endungen"}},
    };
    for (const CategoryRow &row : rows) {
        for (const char *extension : row.extensions)
            EXPECT_EQ(fileCategory(extension), QString::fromLatin1(row.category)) << extension;
    }
}

TEST(FileTypesTest, knowsWhatTypesAreKindsOf)
{
    using enum TypeTrait;
    struct Row {
        const char *extension;
        std::vector<TypeTrait> is;
        std::vector<TypeTrait> isNot;
    };
    const Row rows[] = {
        {"docx", {}, {Archive, Text}},
        {"jar", {Application}, {Archive}},
        {"svg", {Image, Xml, Text}, {SourceCode}},
        {"json", {Json, Text}, {Script, SourceCode}},
        {"geojson", {Json}, {Script}},
        {"ipynb", {Json}, {Script}},
        {"py", {Script, SourceCode, Text}, {Application}},
        {"js", {Script, SourceCode}, {Json}},
        {"java", {SourceCode}, {Script}},
        {"rs", {SourceCode, Text}, {}},
        {"ts", {SourceCode}, {Movie, Xml}},
        {"scpt", {Script}, {Text}},
        {"xhtml", {Xml, Text}, {}},
        {"pptm", {Presentation}, {Spreadsheet, Archive}},
        {"xlsb", {Spreadsheet}, {}},
        {"pkg", {Application}, {Archive}},
    };
    for (const Row &row : rows) {
        const FileType &type = fileTypeOf(row.extension);
        EXPECT_TRUE(type.known && !type.mimeName.isEmpty()) << row.extension;
        for (const TypeTrait trait : row.is)
            EXPECT_TRUE(type.conformsTo(trait)) << row.extension << " " << static_cast<unsigned>(trait);
        for (const TypeTrait trait : row.isNot)
            EXPECT_FALSE(type.conformsTo(trait)) << row.extension << " " << static_cast<unsigned>(trait);
    }
    EXPECT_FALSE(fileTypeOf("xyzzy").known);
}

TEST(FileTypesTest, describesTypesInGerman)
{
    EXPECT_EQ(typeDescription("pdf"), QStringLiteral("PDF-Dokument"));
    EXPECT_EQ(typeDescription("JPG"), QStringLiteral("JPEG-Bild"));
    EXPECT_EQ(typeDescription("ts"), QStringLiteral("TypeScript-Quelltext"));
    EXPECT_EQ(typeDescription("app"), QStringLiteral("Programm"));
    EXPECT_EQ(typeDescription("DOCX"), QStringLiteral("Word-Dokument"));
    EXPECT_EQ(typeDescription("xyzzy"), QString());
    EXPECT_EQ(typeDescription(""), QString());
}

TEST(FileTypesTest, answersAnyNumberOfExtensionsFromEveryThread)
{
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 3; ++thread)
        threads.emplace_back([thread] {
            for (int number = 0; number < 7'000; ++number) { // more in total than the cache holds
                const std::string extension = "e" + std::to_string(thread) + "x" + std::to_string(number);
                ASSERT_FALSE(fileTypeOf(extension).known);
                ASSERT_TRUE(fileTypeOf("pdf").conformsTo(TypeTrait::Pdf));
            }
        });
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(fileCategory("noch-eine"), QStringLiteral("Sonstige"));
    EXPECT_EQ(fileCategory("flac"), QStringLiteral("Musik"));
}

TEST(UserDocumentTest, tellsWhatPeopleMakeFromWhatProgramsConsistOf)
{
    for (const char *name :
         {"a.docx", "B.HEIC", "c.pdf", "d.jpg", "e.mp4", "f.mp3", "g.zip", "h.key", "i.epub", "j.indd"})
        EXPECT_TRUE(isUserDocument(name)) << name;
    for (const char *name : {"a.js", "b.md", "c.TS", "d.html", "e.svg", "f.json", "g.txt", "h.exe", "i.pkg", "ohne",
                             ".pdf", "k.xyzzy", "l.lock", "m.plist", "n.bat"})
        EXPECT_FALSE(isUserDocument(name)) << name;
}

} // namespace
} // namespace brellin
