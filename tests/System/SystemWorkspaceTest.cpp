#include "System/SystemWorkspace.h"

#include "Support/TempTree.h"
#include "System/MemoryUserDefaults.h"
#include "System/ProgramFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include <sys/stat.h>

using namespace brellin;
using brellin::test::TempTree;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

/// A desktop in a temporary folder whose programs record how they were called.
class SystemWorkspaceTest : public testing::Test {
protected:
    SystemWorkspaceTest() { tree.lines({"bin/", "own/applications/", "shared/applications/", "config/", "home/"}); }

    void program(const std::string &name, int exitCode = 0)
    {
        const Location log = tree.path("log");
        const Location file = tree.file("bin/" + name, "#!/bin/sh\n{ echo " + name +
                                                           "; pwd; for word in \"$@\"; do echo \"$word\"; done; } > '" +
                                                           log.native() + ".tmp'\nmv '" + log.native() + ".tmp' '" +
                                                           log.native() + "'\nexit " + std::to_string(exitCode) + "\n");
        ASSERT_EQ(::chmod(file.c_str(), 0755), 0);
    }
    void application(const std::string &path, const std::string &lines)
    {
        tree.file(path, "[Desktop Entry]\nType=Application\n" + lines);
    }
    SystemWorkspace workspace(SystemWorkspace::ShowItems showItems = {})
    {
        return SystemWorkspace(defaults, environment, std::move(showItems));
    }
    /// The call of the program: its name, working folder and arguments.
    std::vector<std::string> called()
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!tree.has("log") && std::chrono::steady_clock::now() < end)
            std::this_thread::yield();
        std::istringstream text(tree.content("log"));
        std::vector<std::string> lines;
        for (std::string line; std::getline(text, line);)
            lines.push_back(line);
        std::filesystem::remove(tree.path("log"));
        return lines;
    }
    std::vector<std::string> words()
    {
        std::vector<std::string> lines = called();
        if (lines.size() > 1)
            lines.erase(lines.begin() + 1);
        return lines;
    }

    TempTree tree;
    MemoryUserDefaults defaults;
    DesktopEnvironment environment{.dataFolders = {tree.path("own"), tree.path("shared")},
                                   .configFolders = {tree.path("config")},
                                   .desktops = {QStringLiteral("kde")},
                                   .programFolders = {tree.path("bin")},
                                   .terminal = {}};
};

} // namespace

TEST_F(SystemWorkspaceTest, opensWithWhatThereIsAndTellsFailures)
{
    const Location entry = tree.path("home/ein Bild.png");
    EXPECT_FALSE(workspace().open(entry));
    program("xdg-open");
    ASSERT_TRUE(workspace().open(entry));
    EXPECT_THAT(words(), ElementsAre("xdg-open", entry.native()));
    program("gio", 2);
    EXPECT_EQ(workspace().open(entry).error().message, QStringLiteral("Dafür ist kein Programm eingerichtet."));
    EXPECT_THAT(words(), ElementsAre("gio", "open", entry.native()));
}

TEST_F(SystemWorkspaceTest, revealsThroughTheFileManagerOrOpensTheFolder)
{
    program("xdg-open");
    std::vector<QString> asked;
    const Location entry = tree.path("home/ü 100%.txt");
    ASSERT_TRUE(workspace([&](const std::vector<QString> &urls) -> Result<void> {
                    asked = urls;
                    return {};
                }).reveal(entry));
    ASSERT_EQ(asked.size(), 1u);
    EXPECT_TRUE(asked[0].endsWith(QStringLiteral("/home/%C3%BC%20100%25.txt"))) << asked[0].toStdString();
    EXPECT_FALSE(tree.has("log"));
    ASSERT_TRUE(workspace([](const auto &) -> Result<void> { return failure(QString()); }).reveal(entry));
    EXPECT_THAT(words(), ElementsAre("xdg-open", tree.path("home").native()));
}

TEST_F(SystemWorkspaceTest, findsApplicationsWhereTheyMayLie)
{
    application("shared/applications/org.kde.kate.desktop", "Name=Kate\nExec=kate %U\n");
    application("shared/applications/kde/konsole.desktop", "Name=Konsole\nExec=konsole\n");
    application("shared/applications/alt.desktop", "Name=Alt\nExec=alt\n");
    tree.file("own/applications/alt.desktop", "[Desktop Entry]\nHidden=true\n");
    application("shared/applications/weg.desktop", "Name=Weg\nTryExec=fehlt\nExec=fehlt\n");
    const SystemWorkspace desktop = workspace();
    EXPECT_TRUE(desktop.hasApplication(QStringLiteral("org.kde.kate")));
    EXPECT_TRUE(desktop.hasApplication(QStringLiteral("org.kde.kate.desktop")));
    EXPECT_TRUE(desktop.hasApplication(QStringLiteral("kde-konsole")));
    for (const char *none : {"alt", "weg", "fehlt", "", "../applications/alt", "kde/konsole"})
        EXPECT_FALSE(desktop.hasApplication(QString::fromUtf8(none))) << none;
    EXPECT_FALSE(workspace().openApplication(QStringLiteral("fehlt")));
}

TEST_F(SystemWorkspaceTest, listsOpenersPreferredFirst)
{
    application("shared/applications/a.desktop", "Name=A\nMimeType=text/plain;\nExec=a\n");
    application("shared/applications/b.desktop",
                "Name=B\nName[de]=Bé\nIcon=b\nMimeType=text/x-python;text/plain\nExec=b\n");
    application("shared/applications/c.desktop", "Name=C\nMimeType=text/x-python;\nExec=c\n");
    application("shared/applications/d.desktop", "Name=D\nMimeType=application/octet-stream;\nExec=d\n");
    const auto openers = [&](const char *type) {
        std::vector<std::string> names;
        for (const Application &one : workspace().applicationsFor(QString::fromUtf8(type)))
            names.push_back(one.name.toStdString());
        return names;
    };
    EXPECT_THAT(openers("text/plain"), ElementsAre("A", "Bé"));
    EXPECT_THAT(openers("text/x-python"), ElementsAre("Bé", "C", "A"));
    EXPECT_THAT(openers("image/png"), IsEmpty());
    tree.file("shared/applications/mimeapps.list", "[Default Applications]\ntext/plain=a.desktop\n");
    tree.file("config/mimeapps.list", "[Default Applications]\ntext/plain=fehlt.desktop;d.desktop;\n"
                                      "[Removed Associations]\ntext/plain=b.desktop\n");
    EXPECT_THAT(openers("text/plain"), ElementsAre("D", "A"));
    tree.file("config/kde-mimeapps.list", "[Default Applications]\ntext/plain=c.desktop\n");
    EXPECT_THAT(openers("text/plain"), ElementsAre("C", "D", "A"));
}

TEST_F(SystemWorkspaceTest, offersWhatOpensFilesAndBelongsIntoMenus)
{
    application("shared/applications/z.desktop", "Name=Zeichnen\nExec=z %U\n");
    application("shared/applications/b.desktop", "Name=Bilder\nExec=b --datei %f\n");
    application("shared/applications/verborgen.desktop", "Name=V\nExec=v %f\nNoDisplay=true\nMimeType=text/plain\n");
    application("shared/applications/weg.desktop", "Name=W\nExec=w %f\nTryExec=fehlt\n");
    application("shared/applications/uhr.desktop", "Name=Uhr\nExec=uhr\n");
    std::vector<std::string> names;
    for (const Application &one : workspace().offeredApplications())
        names.push_back(one.name.toStdString());
    EXPECT_THAT(names, ElementsAre("Bilder", "Zeichnen"));
    EXPECT_EQ(workspace().applicationsFor(QStringLiteral("text/plain")).size(), 1u) << "opens what it was made for";
}

TEST_F(SystemWorkspaceTest, keepsTheOtherPreferencesWhenADefaultIsSet)
{
    application("shared/applications/a.desktop", "Name=A\nMimeType=text/plain;\nExec=a %f\n");
    application("shared/applications/b.desktop", "Name=B\nExec=b %f\n");
    const QString type = QStringLiteral("text/plain");
    const QString b = QStringLiteral("b");
    std::filesystem::remove(tree.path("config"));
    ASSERT_TRUE(workspace().setDefaultApplication(type, b));
    EXPECT_EQ(tree.content("config/mimeapps.list"),
              "[Default Applications]\ntext/plain=b.desktop;\n[Added Associations]\ntext/plain=b.desktop;\n");
    tree.file("config/mimeapps.list", "# eigene Liste\n[Default Applications]\n#text/plain=x\nimage/png=c.desktop\n"
                                      "text/plain=a.desktop;c.desktop\n\n[Removed Associations]\n"
                                      "text/plain=b.desktop;d.desktop\n[X-Andere]\ntext/plain=bleibt");
    ASSERT_TRUE(workspace().setDefaultApplication(type, b));
    EXPECT_EQ(tree.content("config/mimeapps.list"),
              "# eigene Liste\n[Default Applications]\n#text/plain=x\nimage/png=c.desktop\n"
              "text/plain=b.desktop;a.desktop;c.desktop;\n\n[Removed Associations]\ntext/plain=d.desktop;\n"
              "[X-Andere]\ntext/plain=bleibt\n[Added Associations]\ntext/plain=b.desktop;\n");
    EXPECT_EQ(workspace().applicationsFor(type).front().identifier, b);

    tree.file("config/kde-mimeapps.list", "[Default Applications]\ntext/plain=a.desktop\n");
    EXPECT_FALSE(workspace().setDefaultApplication(type, b)) << "the desktop's own list has precedence";
    std::filesystem::remove(tree.path("config/kde-mimeapps.list"));
    std::filesystem::remove(tree.path("config/mimeapps.list"));
    std::filesystem::create_directory(tree.path("config/mimeapps.list"));
    EXPECT_FALSE(workspace().setDefaultApplication(type, b)) << "what cannot be read is not replaced";
}

TEST_F(SystemWorkspaceTest, opensEntriesWithAChosenApplication)
{
    application("own/applications/viele.desktop", "Name=V\nIcon=bild\nExec=\"" + tree.path("bin").native() +
                                                      "/mal\" --titel \"ein \\\\\"Wort\\\\\"\" 100%% %i %F\n");
    application("own/applications/url.desktop", "Name=U\nExec=mal %u\n");
    program("mal");
    const Location a = tree.path("home/a b.txt");
    const Location b = tree.path("home/b.txt");
    ASSERT_TRUE(workspace().openWith({a, b}, QStringLiteral("viele")));
    EXPECT_THAT(words(),
                ElementsAre("mal", "--titel", "ein \"Wort\"", "100%", "--icon", "bild", a.native(), b.native()));
    ASSERT_TRUE(workspace().openWith({a}, QStringLiteral("url")));
    EXPECT_THAT(words(), ElementsAre("mal", "file://" + tree.path("home").native() + "/a%20b.txt"));
    program("gio");
    ASSERT_TRUE(workspace().openWith({a, b}, QStringLiteral("url")));
    EXPECT_THAT(words(), ElementsAre("gio", "launch", tree.path("own/applications/url.desktop").native(), a.native(),
                                     b.native()));
}

TEST_F(SystemWorkspaceTest, opensTheUsersTerminalInAFolder)
{
    const Location folder = tree.path("home");
    EXPECT_FALSE(workspace().openTerminal(folder));
    program("x-terminal-emulator");
    ASSERT_TRUE(workspace().openTerminal(folder));
    EXPECT_THAT(called(), ElementsAre("x-terminal-emulator", folder.native()));
    program("variabel");
    environment.terminal = "variabel";
    ASSERT_TRUE(workspace().openTerminal(folder));
    EXPECT_THAT(called(), ElementsAre("variabel", folder.native()));
    program("eigen");
    ASSERT_TRUE(defaults.setValue(QStringLiteral("terminal"), QStringLiteral("eigen --neu \"zwei Worte\"")));
    ASSERT_TRUE(workspace().openTerminal(folder));
    EXPECT_THAT(called(), ElementsAre("eigen", folder.native(), "--neu", "zwei Worte"));
}

TEST(ProgramFileTest, tellsProgramsFromWhatIsOnlyOpened)
{
    const TempTree tree;
    struct Row {
        const char *name;
        const char *content;
        mode_t mode;
        bool program;
    };
    const std::vector<Row> rows = {
        {"spiel", "\177ELF\2", 0755, true},
        {"spiel daten", "\177ELF\2", 0644, false},
        {"lauf", "#!/bin/sh\n", 0700, true},
        {"los.SH", "echo", 0755, true},
        {"los.py", "print()", 0644, false},
        {"bild.png", "\x89PNG", 0777, false},
        {"start.desktop", "[Desktop", 0644, true},
        {"setup.exe", "MZ", 0644, true},
        {"notiz", "", 0755, false},
        {"kurz", "#", 0755, false},
    };
    for (const Row &row : rows) {
        const Location file = tree.file(row.name, row.content);
        ASSERT_EQ(::chmod(file.c_str(), row.mode), 0);
        EXPECT_EQ(isProgram(file), row.program) << row.name;
    }
    EXPECT_TRUE(isProgram(tree.link("verweis.txt", "lauf")));
    EXPECT_FALSE(isProgram(tree.folder("ordner.app")));
    EXPECT_FALSE(isProgram(tree.path("fehlt.exe")));
}
