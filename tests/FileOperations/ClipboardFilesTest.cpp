#include "FileOperations/ClipboardFiles.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <map>

#include <unistd.h>

using namespace brellin;
using Purpose = ClipboardFiles::Purpose;

namespace {

using Forms = std::map<QByteArray, QByteArray>;

std::optional<ClipboardFiles> read(const Forms &forms)
{
    return clipboardFilesFrom([&](const char *form) {
        const auto found = forms.find(form);
        return found == forms.end() ? QByteArray() : found->second;
    });
}

Forms written(const ClipboardFiles &files)
{
    Forms forms;
    for (const auto &[name, bytes] : clipboardFormsOf(files))
        forms[name] = bytes;
    return forms;
}

} // namespace

TEST(ClipboardFilesTest, writesTheFormsAsOtherFileManagersDo)
{
    const Forms forms = written({Purpose::Cut, {"/tmp/a b.txt", "/tmp/ü#%.txt"}});
    EXPECT_EQ(forms.at("text/uri-list"), "file:///tmp/a%20b.txt\r\nfile:///tmp/%C3%BC%23%25.txt\r\n");
    EXPECT_EQ(forms.at("x-special/gnome-copied-files"), "cut\nfile:///tmp/a%20b.txt\nfile:///tmp/%C3%BC%23%25.txt");
    EXPECT_EQ(forms.at("application/x-kde-cutselection"), "1");
    EXPECT_EQ(forms.at("text/plain"), "/tmp/a b.txt\n/tmp/ü#%.txt");
    EXPECT_EQ(written({Purpose::Copy, {"/a"}}).at("x-special/gnome-copied-files"), "copy\nfile:///a");
    EXPECT_EQ(written({Purpose::Copy, {"/a"}}).at("application/x-kde-cutselection"), "0");
}

TEST(ClipboardFilesTest, comesBackThroughEachFormByteForByte)
{
    std::string every = "/x";
    for (int byte = 1; byte < 256; ++byte)
        every += byte == '/' ? '_' : static_cast<char>(byte);
    for (const Purpose purpose : {Purpose::Copy, Purpose::Cut}) {
        const ClipboardFiles files{purpose, {"/a\nb\r", every}};
        Forms forms = written(files);
        EXPECT_EQ(read({*forms.find("x-special/gnome-copied-files")}), files);
        EXPECT_EQ(read({*forms.find("text/uri-list"), *forms.find("application/x-kde-cutselection")}), files);
    }
}

TEST(ClipboardFilesTest, readsWhatOthersWriteAndOnlyFilesOfThisMachine)
{
    std::array<char, 256> host{};
    ::gethostname(host.data(), host.size() - 1);
    struct Row {
        QByteArray list;
        std::vector<Location> entries;
    };
    const std::vector<Row> rows{
        {"file:///a\nfile:///b", {"/a", "/b"}},
        {"# comment\r\nfile:///a\r\n\r\n", {"/a"}},
        {"file:/a%2", {"/a%2"}},
        {"file://localhost/a/../b", {"/b"}},
        {QByteArray("file://") + host.data() + "/a", {"/a"}},
        {"file://elsewhere/a\nhttp://x/a\nsmb://x/a\nplain\nfile://", {}},
        {"file:///a%00b", {}},
        {"file:///%c3%bc\0", {"/ü"}},
    };
    for (const Row &row : rows) {
        const std::optional<ClipboardFiles> files = read({{"text/uri-list", row.list}});
        EXPECT_EQ(files ? files->entries : std::vector<Location>(), row.entries) << row.list.constData();
    }
    // Neither a malformed format nor an empty clipboard contains files.
    EXPECT_EQ(read({{"x-special/gnome-copied-files", "move\nfile:///a"}}), std::nullopt);
    EXPECT_EQ(read({}), std::nullopt);
    // The format that distinguishes cut from copy has priority.
    EXPECT_EQ(read({{"x-special/gnome-copied-files", "cut\nfile:///a\n"}, {"text/uri-list", "file:///b"}}),
              (ClipboardFiles{Purpose::Cut, {"/a"}}));
}
