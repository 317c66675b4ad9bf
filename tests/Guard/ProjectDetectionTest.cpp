#include "Guard/ProjectDetection.h"

#include "Agent/Analysis/ProtectedEntries.h"
#include "Support/TempTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include <sys/inotify.h>
#include <unistd.h>

using namespace brellin;
using brellin::test::TempTree;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

/// "entry: reason", by name.
std::vector<std::string> reasons(const Location &folder)
{
    std::vector<std::string> lines;
    for (const ProtectedEntry &entry : detectProtected(folder))
        lines.push_back((entry.path + u": "_qs + entry.reason).toStdString());
    return lines;
}

TEST(ProjectDetectionTest, AMarkerOrAScriptMakesAProject)
{
    struct Row {
        const char *entry;
        bool marked;
        bool project;
    };
    for (const Row &row : std::initializer_list<Row>{
             {".git/HEAD", true, true},
             {".git", true, true}, // a file, as in a git worktree
             {"composer.json", true, true},
             {"App.xcodeproj/project.pbxproj", true, true},
             {".xcodeproj", true, true},
             {"deploy.sh", false, true},
             {"Skript.PY", false, true},
             {"notes.txt", false, false},
             {"data.json", false, false},
             {"sub/package.json", false, false},
             {"cargo.toml.bak", false, false},
         }) {
        const TempTree tree;
        tree.lines({row.entry, "photo.jpg"});
        EXPECT_EQ(isMarkedProject(tree.root()), row.marked) << row.entry;
        EXPECT_EQ(isProject(tree.root()), row.project) << row.entry;
    }
    const TempTree tree;
    tree.lines({"p/weg->fehlt", "zu/"});
    tree.link("p/.git", "fehlt");
    EXPECT_TRUE(isMarkedProject(tree.path("p"))) << "a dangling link is an entry";
    EXPECT_FALSE(isProject(tree.path("zu")));
    EXPECT_FALSE(isProject(tree.path("fehlt")));
}

TEST(ProjectDetectionTest, TheFirstReasonWins)
{
    const TempTree tree;
    tree.lines({".git/hooks/pre-commit.sh",
                ".github/workflows/x.yml",
                ".claude/x.md",
                "CLAUDE.md",
                "supabase/f/x.ts",
                ".obsidian/x.json",
                "node_modules/a/package.json",
                "packages/b/package.json",
                ".svn/x",
                "Pods/x.swift",
                "build=eine Datei",
                "werkzeug/package.json",
                "skripte/a.sh",
                "01_Einleitung/x.txt",
                "02 Code/x.py",
                "03-Werkzeug/run.sh",
                "2024/x.txt",
                "7.Kapitel/x.txt",
                "quellen/tief/tiefer/main.c",
                "fotos/a.jpg",
                "bilder2/b.jpg",
                "bilder/c.jpg",
                "daten/d.jpg",
                "Einleitung/e.jpg",
                "Makefile",
                "main.rs",
                "stil.CSS",
                "LIESMICH.md",
                "package.json",
                "deploy.sh=cp daten.csv bilder2/ \"01_Einleitung\" deploy.sh",
                "alt.command=sh daten.csv deploy.sh",
                "daten.csv",
                "brief.pdf",
                ".env",
                ".eslintrc.js",
                ".editorconfig",
                "ab",
                "App.xcworkspace/x"});
    EXPECT_THAT(reasons(tree.root()),
                ElementsAre(".claude: Claude-Regeln und Werkzeuge", ".editorconfig: Versteckte Projektdatei",
                            ".env: Versteckte Projektdatei", ".eslintrc.js: Enthält Programmcode",
                            ".git: Versionsverwaltung (Git)", ".github: GitHub-Automatik",
                            ".obsidian: Obsidian-Einstellungen", ".svn: Versteckte Projektdatei",
                            "01_Einleitung: Wird benutzt in deploy.sh", "02 Code: Eigenes Software-Projekt",
                            "03-Werkzeug: Eigenes Software-Projekt", "7.Kapitel: Nummerierter Doku-Bereich",
                            "App.xcworkspace: Enthält Programmcode", "CLAUDE.md: Claude-Regeln und Werkzeuge",
                            "LIESMICH.md: Enthält Programmcode", "Makefile: Enthält Programmcode",
                            "Pods: Programmbausteine", "alt.command: Enthält Programmcode",
                            "bilder2: Wird benutzt in deploy.sh", "daten.csv: Wird benutzt in alt.command",
                            "deploy.sh: Wird benutzt in alt.command", "main.rs: Enthält Programmcode",
                            "node_modules: Programmbausteine", "package.json: Enthält Programmcode",
                            "packages: Programmbausteine", "quellen: Enthält Programmcode",
                            "skripte: Eigenes Software-Projekt", "stil.CSS: Enthält Programmcode",
                            "supabase: Server-Funktionen (Supabase)", "werkzeug: Eigenes Software-Projekt"));
}

TEST(ProjectDetectionTest, ReadsEachScriptOnce)
{
    const TempTree tree;
    for (int i = 0; i < 4; ++i) {
        tree.file("s" + std::to_string(i) + ".sh", "cp b0.jpg b1.jpg b2.jpg b3.jpg");
        tree.file("b" + std::to_string(i) + ".jpg");
    }
    const int watcher = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    ASSERT_GE(watcher, 0);
    // Watch closing too, since inotify merges consecutive identical events.
    ASSERT_GE(::inotify_add_watch(watcher, tree.path("s0.sh").c_str(), IN_OPEN | IN_CLOSE), 0);
    EXPECT_THAT(reasons(tree.root()), testing::Contains("b3.jpg: Wird benutzt in s0.sh"));
    std::array<char, 65536> events{};
    const ssize_t read = ::read(watcher, events.data(), events.size());
    ::close(watcher);
    EXPECT_EQ(read, static_cast<ssize_t>(2 * sizeof(inotify_event))) << "one opening and one closing";
}

TEST(ProjectDetectionTest, ADetectedProfileProtectsWhatItNames)
{
    const TempTree tree;
    tree.lines({"kaputt\xFF.c", "U\u0308bung.py", "brief.pdf"});
    const FolderProfile profile = detectedProfile(tree.root());
    EXPECT_FALSE(profile.tidyAllowed);
    EXPECT_EQ(profile.root(), tree.root());
    EXPECT_EQ(profile.protectedEntries.size(), 2U);
    EXPECT_TRUE(profile.isProtected(tree.path("kaputt\xFF.c")));
    EXPECT_TRUE(profile.isProtected(tree.path("Übung.py")));
    EXPECT_FALSE(profile.isProtected(tree.path("brief.pdf")));
    EXPECT_THAT(reasons(tree.path("fehlt")), IsEmpty());
}

TEST(ProjectDetectionTest, ProjectsAreFoundAboveButNotAroundTheHomeFolder)
{
    const TempTree tree;
    tree.lines({".git/", "home/.git/", "home/bilder/a.jpg", "home/p/package.json", "home/p/teil/go.mod",
                "home/p/teil/bild.png", "home/p/text/a/b.pdf", "disk/p/.git/", "disk/p/x"});
    ProjectRoots roots(tree.path("home"));
    EXPECT_EQ(roots.above(tree.path("home/bilder/a.jpg")), std::nullopt);
    EXPECT_EQ(roots.above(tree.path("home/p/text/a/b.pdf")), tree.path("home/p"));
    EXPECT_EQ(roots.above(tree.path("home/p/teil/bild.png")), tree.path("home/p/teil"));
    EXPECT_EQ(roots.outermostAbove(tree.path("home/p/teil/bild.png")), tree.path("home/p"));
    EXPECT_EQ(roots.above(tree.path("home/p")), std::nullopt);
    EXPECT_EQ(roots.above(tree.path("disk/p/x")), tree.path("disk/p"));
}

} // namespace
