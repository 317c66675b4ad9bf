#include "Agent/Rules/RuleMatching.h"

#include "Base/German.h"
#include "Support/FakeClock.h"
#include "Support/TempTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace brellin;
using namespace std::chrono_literals;
using brellin::test::FakeClock;
using brellin::test::TempTree;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

RuleCondition condition(ConditionKind kind, const QString &value)
{
    return {.kind = kind, .value = value};
}

class RuleMatchingTest : public ::testing::Test {
protected:
    using enum ConditionKind;

    RuleMatchingTest() { tree.lines({"home/", "system/"}); }

    CleanupRule rule(const QString &name, std::vector<RuleCondition> conditions = {},
                     const QString &target = u"~/Ziel"_qs) const
    {
        CleanupRule made;
        made.name = name;
        made.sourcePath = u"~/Downloads"_qs;
        made.conditions = std::move(conditions);
        made.targetPath = target;
        return made;
    }

    RuleEvaluation evaluate(const std::vector<CleanupRule> &rules) const
    {
        return RuleMatching(locations, clock).evaluateCounting(rules).value();
    }

    /// Lines "rule: source -> destination", relative to the home folder.
    std::vector<std::string> lines(const std::vector<CleanupRule> &rules) const
    {
        std::vector<std::string> found;
        for (const Candidate &one : evaluate(rules).candidates) {
            std::string line = one.reason.toStdString() + ": " + belowHome(one.source);
            if (one.destination)
                line += " -> " + belowHome(*one.destination);
            found.push_back(line);
        }
        return found;
    }

    bool matches(const RuleCondition &one, std::string_view file) const
    {
        return RuleMatching(locations, clock).matches(rule(u"A"_qs, {one}), tree.path(file));
    }

    std::string belowHome(const Location &location) const
    {
        return location.lexically_relative(tree.path("home")).native();
    }

    QString year(std::string_view file) const
    {
        const auto created = readAttributes(tree.path(file)).value().created;
        return QString::fromStdString(std::to_string(
            static_cast<int>(std::chrono::year_month_day(std::chrono::floor<std::chrono::days>(*created)).year())));
    }

    TempTree tree;
    FakeClock clock;
    SystemLocations locations{tree.path("home"), {tree.path("system")}};
};

TEST_F(RuleMatchingTest, TextConditions)
{
    struct Row {
        ConditionKind kind;
        QString value;
        const char *file;
        bool holds;
    };
    for (const Row &row : std::initializer_list<Row>{
             {NameContains, u"rechnung, Beleg"_qs, "Meine RECHNUNG.pdf", true},
             {NameContains, u"rechnung, Beleg"_qs, "Rech.pdf", false},
             {NameContains, u".pdf"_qs, "a.PDF", true},
             {NameContains, u" , ,, "_qs, "a", true},
             {NameContains, u"überweisung"_qs, "ÜBERWEISUNG.pdf", true},
             {NameContains, u"überweisung"_qs, "U\u0308berweisung.pdf", true},
             {NameContains, u"U\u0308ber"_qs, "Überblick", true},
             {NameContains, u"straße"_qs, "HAUPTSTRASSE.txt", true},
             {NameContains, u"k"_qs, "\xFFkaputt", true},
             {NameContains, u"a/b"_qs, "ab", false},
             {ExtensionIs, u".PDF , jpg"_qs, "a.pdf", true},
             {ExtensionIs, u".PDF , jpg"_qs, "b.JPG", true},
             {ExtensionIs, u".PDF , jpg"_qs, "pdf", false},
             {ExtensionIs, u"gz"_qs, "a.tar.gz", true},
             {ExtensionIs, u".tar.gz"_qs, "a.tar.GZ", true},
             {ExtensionIs, u"tar.gz"_qs, "star.gz", false},
             {ExtensionIs, u" , "_qs, "a.b", true},
             {Category, u"bilder, VIDEOS"_qs, "a.jpg", true},
             {Category, u"bilder, VIDEOS"_qs, "a.Mp4", true},
             {Category, u"Bild"_qs, "a.jpg", false},
             {Category, u"Sonstige"_qs, "a", true},
         }) {
        EXPECT_EQ(matches(condition(row.kind, row.value), row.file), row.holds)
            << row.value.toStdString() << " / " << row.file;
    }
}

TEST_F(RuleMatchingTest, NumberConditions)
{
    struct Row {
        ConditionKind kind;
        QString value;
        bool holds;
    };
    tree.file("datei", std::string(1'000'000, 'x'));
    tree.age("datei", clock.time - 36h);
    for (const Row &row : std::initializer_list<Row>{
             {OlderThanDays, u"1,5"_qs, true},
             {OlderThanDays, u" 1.5 "_qs, true},
             {OlderThanDays, u"1,51"_qs, false},
             {OlderThanDays, u"0"_qs, true},
             {OlderThanDays, u"-3"_qs, true},
             {OlderThanDays, u"abc"_qs, false},
             {OlderThanDays, u""_qs, false},
             {OlderThanDays, u"nan"_qs, false},
             {OlderThanDays, u"-inf"_qs, false},
             {OlderThanDays, u"1e400"_qs, false},
             {LargerThanMB, u"1"_qs, true},
             {LargerThanMB, u"1,000001"_qs, false},
             {LargerThanMB, u"x"_qs, false},
         }) {
        EXPECT_EQ(matches(condition(row.kind, row.value), "datei"), row.holds) << row.value.toStdString();
    }
    tree.age("datei", clock.time + 1h);
    EXPECT_TRUE(matches(condition(OlderThanDays, u"0"_qs), "datei")) << "dated into the future";
    EXPECT_FALSE(matches(condition(OlderThanDays, u"0"_qs), "fehlt"));
    EXPECT_FALSE(matches(condition(LargerThanMB, u"0"_qs), "home")) << "a folder has no size";
    EXPECT_TRUE(matches(condition(NameContains, u"fehl"_qs), "fehlt")) << "a name needs no file";
}

TEST_F(RuleMatchingTest, SeesFilesAndPackagesOnly)
{
    tree.lines({"home/Downloads/a.txt", "home/Downloads/.versteckt", "home/Downloads/.hidden=leise.txt\n",
                "home/Downloads/leise.txt", "home/Downloads/link->a.txt", "home/Downloads/App.app/innen.txt",
                "home/Downloads/sub/b.txt", "home/Downloads/run.SH", "home/Downloads/x.mjs"});
    ASSERT_EQ(::mkfifo(tree.path("home/Downloads/rohr").c_str(), 0600), 0);
    CleanupRule all = rule(u"R"_qs);
    EXPECT_THAT(lines({all}), ElementsAre("R: Downloads/App.app -> Ziel/App.app", "R: Downloads/a.txt -> Ziel/a.txt"));
    EXPECT_TRUE(evaluate({all}).candidates[0].isPackage);
    EXPECT_EQ(evaluate({all}).checkedFiles, 4);
    all.includeSubfolders = true;
    EXPECT_THAT(lines({all}), ElementsAre("R: Downloads/App.app -> Ziel/App.app", "R: Downloads/a.txt -> Ziel/a.txt",
                                          "R: Downloads/sub/b.txt -> Ziel/b.txt"));
}

TEST_F(RuleMatchingTest, TheFirstRuleTakesAFile)
{
    tree.lines({"home/Downloads/a.pdf", "home/Downloads/b.pdf", "home/Downloads/c.txt", "home/Downloads/sub/d.pdf"});
    CleanupRule off = rule(u"aus"_qs);
    off.enabled = false;
    CleanupRule narrow = rule(u"eng"_qs, {condition(NameContains, u"a"_qs)}, u"~/A"_qs);
    // Already in place for this rule, so the next one may take it.
    CleanupRule inPlace = rule(u"da"_qs, {condition(NameContains, u"b"_qs)}, u"~/Downloads/"_qs);
    CleanupRule wide = rule(u"weit"_qs, {condition(ExtensionIs, u"pdf"_qs)}, u"~/W"_qs);
    wide.includeSubfolders = true;
    CleanupRule trash = rule(u"weg"_qs);
    trash.action = RuleAction::Trash;
    trash.automatic = true;
    const std::vector<CleanupRule> rules{off, narrow, inPlace, wide, trash};
    EXPECT_THAT(lines(rules), ElementsAre("eng: Downloads/a.pdf -> A/a.pdf", "weit: Downloads/b.pdf -> W/b.pdf",
                                          "weit: Downloads/sub/d.pdf -> W/d.pdf", "weg: Downloads/c.txt"));
    const RuleEvaluation evaluation = evaluate(rules);
    EXPECT_EQ(evaluation.checkedFiles, 4);
    EXPECT_TRUE(evaluation.candidates.back().automatic);
    EXPECT_EQ(evaluation.candidates.back().seen,
              FileState::of(readAttributes(tree.path("home/Downloads/c.txt")).value()));
}

TEST_F(RuleMatchingTest, KeepsTheOrderOfManyFilesWithinARule)
{
    for (int i = 0; i < 60; ++i)
        tree.file("home/Downloads/" + std::to_string(i * 23 % 60) + (i % 2 == 0 ? ".pdf" : ".txt"));
    const CleanupRule texts = rule(u"Texte"_qs, {condition(ExtensionIs, u"txt"_qs)}, u"~/T"_qs);
    const CleanupRule rest = rule(u"Rest"_qs, {}, u"~/R"_qs);
    std::vector<std::string> alone = lines({texts});
    EXPECT_EQ(alone.size(), 30u);
    std::vector<std::string> both = lines({texts, rest});
    both.resize(alone.size());
    EXPECT_EQ(both, alone);
}

TEST_F(RuleMatchingTest, OverlappingSourcesGiveOneCandidateAFile)
{
    tree.lines({"home/Downloads/a.txt", "home/Downloads/sub/b.txt", "home/weg->Downloads"});
    CleanupRule inner = rule(u"innen"_qs, {}, u"~/I"_qs);
    inner.sourcePath = u"~/Downloads/sub"_qs;
    CleanupRule other = rule(u"link"_qs, {condition(NameContains, u"a"_qs)}, u"~/L"_qs);
    other.sourcePath = u"~/weg/"_qs;
    CleanupRule outer = rule(u"außen"_qs, {}, u"~/A"_qs);
    outer.includeSubfolders = true;
    EXPECT_THAT(lines({outer, inner, other}),
                ElementsAre("außen: Downloads/a.txt -> A/a.txt", "außen: Downloads/sub/b.txt -> A/b.txt"));
    EXPECT_THAT(lines({inner, other, outer}),
                ElementsAre("innen: Downloads/sub/b.txt -> I/b.txt", "link: weg/a.txt -> L/a.txt"));
    EXPECT_EQ(evaluate({inner, other, outer}).checkedFiles, 2);
    // The same folder by another path: already in place.
    EXPECT_THAT(lines({rule(u"R"_qs, {}, u"~/weg"_qs)}), IsEmpty());
}

TEST_F(RuleMatchingTest, NothingRefusedBecomesACandidate)
{
    tree.lines({"home/Library/x.txt", "home/.config/x.txt", "system/x.txt", "home/link->../system", "home/offen/x.txt",
                "home/hin->.", "home/Library/Mobile Documents/com~apple~CloudDocs/y.txt"});
    for (const char *const source :
         {"~/Library", "~/.config", "~/../system", "~/link", "~/link/..", "relativ", "", "/"}) {
        CleanupRule one = rule(u"R"_qs);
        one.sourcePath = QString::fromUtf8(source);
        EXPECT_THAT(lines({one}), IsEmpty()) << source;
        EXPECT_EQ(evaluate({one}).checkedFiles, 0) << source;
    }
    CleanupRule whole = rule(u"R"_qs);
    whole.includeSubfolders = true;
    for (const char *const source : {"~", "~/hin"}) {
        whole.sourcePath = QString::fromUtf8(source);
        const RuleEvaluation evaluation = evaluate({whole});
        ASSERT_EQ(evaluation.candidates.size(), 1U) << source;
        EXPECT_EQ(evaluation.candidates[0].source.filename(), "x.txt");
        EXPECT_EQ(evaluation.candidates[0].source.parent_path().filename(), "offen");
    }
    whole.sourcePath = u"~/Library/Mobile Documents/com~apple~CloudDocs"_qs;
    EXPECT_EQ(evaluate({whole}).candidates.size(), 1U);
}

TEST_F(RuleMatchingTest, MissingFoldersGiveNothing)
{
    tree.lines({"home/datei.txt", "home/zu/a.txt"});
    for (const char *const source : {"~/fehlt", "~/datei.txt"}) {
        CleanupRule one = rule(u"R"_qs);
        one.sourcePath = QString::fromUtf8(source);
        EXPECT_THAT(lines({one}), IsEmpty()) << source;
    }
}

TEST_F(RuleMatchingTest, WhatScriptsNameStays)
{
    tree.lines({"home/Downloads/run.sh=cat notes.txt 'Über uns.pdf' Mein\\ Bild.jpg; rm ab",
                "home/Downloads/lies.PY=open('U\u0308bung.txt')", "home/Downloads/los.js=daten.csv",
                "home/Downloads/notes.txt", "home/Downloads/U\u0308ber uns.pdf", "home/Downloads/Übung.txt",
                "home/Downloads/Mein Bild.jpg", "home/Downloads/ab", "home/Downloads/daten.csv",
                "home/Downloads/otes.txt2", "home/Downloads/sub/tief.sh=frei.txt", "home/Downloads/frei.txt"});
    CleanupRule one = rule(u"R"_qs);
    const CleanupRule two = rule(u"S"_qs);
    EXPECT_THAT(lines({one, two}),
                ElementsAre("R: Downloads/ab -> Ziel/ab", "R: Downloads/daten.csv -> Ziel/daten.csv",
                            "R: Downloads/frei.txt -> Ziel/frei.txt", "R: Downloads/otes.txt2 -> Ziel/otes.txt2"));
    EXPECT_EQ(evaluate({one, two}).leftForScripts, 4);
    one.includeSubfolders = true;
    EXPECT_EQ(evaluate({one, two}).leftForScripts, 5);
}

TEST_F(RuleMatchingTest, ReadingScriptsLeavesTheirAccessTimes)
{
    tree.lines({"home/Downloads/run.sh=a.txt", "home/Downloads/a.txt"});
    const Instant old = clock.time - std::chrono::days(9999);
    tree.age("home/Downloads/run.sh", old);
    EXPECT_EQ(evaluate({rule(u"R"_qs)}).leftForScripts, 1);
    EXPECT_EQ(readAttributes(tree.path("home/Downloads/run.sh")).value().accessed, old);
}

TEST_F(RuleMatchingTest, HalfWrittenDownloadsWait)
{
    tree.lines({"home/Downloads/a.iso.part", "home/Downloads/a.iso", "home/Downloads/b.crdownload",
                "home/Downloads/c.zip.download/", "home/Downloads/c.zip", "home/Downloads/sub/a.iso",
                "home/Downloads/partitur.pdf"});
    CleanupRule all = rule(u"R"_qs);
    all.includeSubfolders = true;
    EXPECT_THAT(lines({all}),
                ElementsAre("R: Downloads/partitur.pdf -> Ziel/partitur.pdf", "R: Downloads/sub/a.iso -> Ziel/a.iso"));
    EXPECT_EQ(evaluate({all}).leftForScripts, 0);
}

TEST_F(RuleMatchingTest, AnEmptyFileBesideABrowsersDownloadWaits)
{
    tree.lines({"home/Downloads/Rechnung.Zy8dR0Ap.pdf.part=1", "home/Downloads/Rechnung.pdf",
                "home/Downloads/LIESMICH.aB3dEf9h.part=1", "home/Downloads/LIESMICH",
                "home/Downloads/voll.Zy8dR0Ap.pdf.part=1", "home/Downloads/voll.pdf=fertig",
                "home/Downloads/brief.entwurf.pdf.part=1", "home/Downloads/brief.pdf"});
    EXPECT_THAT(lines({rule(u"R"_qs)}),
                ElementsAre("R: Downloads/brief.pdf -> Ziel/brief.pdf", "R: Downloads/voll.pdf -> Ziel/voll.pdf"));
}

TEST_F(RuleMatchingTest, TargetsFollowThePattern)
{
    tree.lines({"home/Downloads/a b.PDF", "home/Downloads/kaputt\xFF.pdf"});
    const std::string thisYear = year("home/Downloads/a b.PDF").toStdString();
    struct Row {
        const char *target;
        std::string folder;
    };
    for (const Row &row : std::initializer_list<Row>{
             {"~/Z/{Jahr}/{Kategorie}", "Z/" + thisYear + "/Dokumente"},
             {"~/Z {Name}x/{Endung}", "Z  x/PDF"},
             {"~/Z/../Y//./", "Y"},
             {"~", "."},
         }) {
        const std::vector<Candidate> found =
            evaluate({rule(u"R"_qs, {condition(NameContains, u"a b"_qs)}, QString::fromUtf8(row.target))}).candidates;
        ASSERT_EQ(found.size(), 1U) << row.target;
        EXPECT_EQ(belowHome(found[0].destination->parent_path()), row.folder) << row.target;
        EXPECT_EQ(found[0].destination->filename(), "a b.PDF");
    }
    for (const QString &nowhere : {u""_qs, u"{Name}"_qs, u"~/Downloads/./"_qs, u"~/x/../Downloads"_qs})
        EXPECT_THAT(lines({rule(u"R"_qs, {}, nowhere)}), IsEmpty()) << nowhere.toStdString();
    // Taken, so that no later rule gets the files, but for a target that is always refused.
    for (const QString &refused : {u"Ziel"_qs, u"~anna/x"_qs, QString(u"/a"_qs + QChar(0) + u'b')}) {
        const std::vector<Candidate> found = evaluate({rule(u"R"_qs, {}, refused)}).candidates;
        EXPECT_EQ(found.size(), 2U) << refused.toStdString();
        for (const Candidate &one : found)
            EXPECT_TRUE(one.destination->is_relative()) << *one.destination;
    }
    CleanupRule copy = rule(u"R"_qs, {condition(NameContains, u"kaputt"_qs)}, u"~/Ü {Endung}"_qs);
    copy.action = RuleAction::Copy;
    EXPECT_THAT(lines({copy}), ElementsAre("R: Downloads/kaputt\xFF.pdf -> Ü pdf/kaputt\xFF.pdf"));
    EXPECT_EQ(evaluate({copy}).candidates[0].kind, AgentProposal::Kind::Copy);
}

TEST_F(RuleMatchingTest, RenamingMakesAUsableName)
{
    struct Row {
        const char *file;
        QString pattern;
        std::string name; ///< empty: keeps its name
    };
    tree.file("jahr");
    const QString y = year("jahr");
    const std::string long240(240, 'x');
    for (const Row &row : std::initializer_list<Row>{
             {"Brief_an (2).PDF", u"{Name}"_qs, "Brief an.PDF"},
             {"brief.pdf", u"{Name}"_qs, ""},
             {"brief.pdf", u""_qs, ""},
             {"brief.pdf", u" . "_qs, ""},
             {"brief.pdf", u".."_qs, ""},
             {"brief.pdf", u"...x"_qs, "x.pdf"},
             {"brief.pdf", u"a/b {Endung}"_qs, "a-b pdf.pdf"},
             {"brief.pdf", u"neu.Pdf"_qs, "neu.Pdf"},
             {"brief.pdf", u"Mypdf"_qs, "Mypdf.pdf"},
             {"brief", u"{Jahr} {Name}"_qs, (y + u" brief"_qs).toStdString()},
             {"U\u0308.pdf", u"Ü"_qs, ""},
             {"kaputt\xFF.pdf", u"neu"_qs, ""},
             {"brief", u". .."_qs, ""},
             {"brief", u". ..x"_qs, "x"},
             {"brief", u" . \u00A0.versteckt"_qs, "versteckt"},
             {"brief.pdf", QString(250, u'ä'),
              [] {
                  std::string cut;
                  while (cut.size() + 2 <= 251)
                      cut += "ä";
                  return cut + ".pdf";
              }()},
             {"brief.pdf", QString(251, u'y') + u"{Name}"_qs, ""},
         }) {
        const TempTree folder(tree.path("home"));
        folder.file(row.file);
        CleanupRule one = rule(u"R"_qs);
        one.sourcePath = textOf(folder.root());
        one.action = RuleAction::Rename;
        one.renamePattern = row.pattern;
        const std::vector<Candidate> found = evaluate({one}).candidates;
        ASSERT_EQ(found.size(), row.name.empty() ? 0U : 1U) << row.file << " " << row.pattern.toStdString();
        for (const Candidate &candidate : found)
            EXPECT_EQ(candidate.destination, folder.path(row.name));
    }
}

/// Files, the pattern of a rule that renames them, and what they are called in the end.
struct RenamingRow {
    QString pattern;
    std::vector<QString> files;
    std::vector<QString> named; ///< final names; "*" is the file's birth date, "+" its year
    int rounds;                 ///< number of rounds that rename something
};

const std::vector<RenamingRow> &renamingRows()
{
    static const std::vector<RenamingRow> rows{
        {u"{Jahr} {Name}"_qs, {u"brief.pdf"_qs}, {u"+ brief.pdf"_qs}, 1},
        {u"{Jahr} {Name}"_qs, {u"1999 brief.pdf"_qs}, {u"1999 brief.pdf"_qs}, 0},
        {u"{Datum} {Name}"_qs, {u"2019-02-03 brief_an (2).pdf"_qs}, {u"2019-02-03 brief an.pdf"_qs}, 1},
        {u"{Datum} {Name}"_qs, {u"2019-13-03 brief.pdf"_qs}, {u"* 2019-13-03 brief.pdf"_qs}, 1},
        {u"{Datum} {Name}.{Endung}"_qs, {u"brief.pdf"_qs, u"LIESMICH"_qs}, {u"* LIESMICH."_qs, u"* brief.pdf"_qs}, 1},
        {u" .{Datum} {Name} . "_qs, {u"brief.pdf"_qs}, {u"* brief ..pdf"_qs}, 1},
        {u"{Name} "_qs, {u"brief.pdf"_qs}, {u"brief.pdf"_qs}, 0},
        {u"{Name}{Name}"_qs, {u"brief.pdf"_qs, u"ja_ja.pdf"_qs}, {u"briefbrief.pdf"_qs, u"ja jaja ja.pdf"_qs}, 1},
        {u"{Name} {Tag}.{Monat}.{Jahr}"_qs, {u"LIESMICH 01.02.2020"_qs}, {u"LIESMICH 01.02.2020"_qs}, 0},
        {u"{Name} {Datum}"_qs,
         {u"a 2020-01-02.pdf"_qs, u"a 2020-01-02 (2).pdf"_qs},
         {u"a 2020-01-02 (2).pdf"_qs, u"a 2020-01-02.pdf"_qs},
         0},
        {u"{Datum} {Name}"_qs, {u"(2).pdf"_qs}, {u"*.pdf"_qs}, 1},
        {u"a/{Name}_{Jahr}"_qs, {u"a-brief_1999.pdf"_qs}, {u"a-brief_1999.pdf"_qs}, 0},
        {u"{Name} [{Kategorie}]"_qs,
         {u"a.pdf"_qs, u"b [Bilder].pdf"_qs},
         {u"a [Dokumente].pdf"_qs, u"b [Bilder] [Dokumente].pdf"_qs},
         1},
        {u"Foto {Name}"_qs,
         {u"Foto vom Meer.jpg"_qs, u"Fotos.jpg"_qs},
         {u"Foto Fotos.jpg"_qs, u"Foto vom Meer.jpg"_qs},
         1},
        {u"{Jahr}"_qs, {u"1999.pdf"_qs, u"1999 (2).pdf"_qs}, {u"1999 (2).pdf"_qs, u"1999.pdf"_qs}, 0},
        {u"{Jahr}"_qs, {u"1999 (2).pdf"_qs}, {u"1999.pdf"_qs}, 1},
        // Without an extension the text around {Endung} remains.
        {u"{Name} {Endung}.{Endung}"_qs, {u"LIESMICH"_qs, u"a.pdf"_qs}, {u"LIESMICH ."_qs, u"a pdf.pdf"_qs}, 1},
        {u"{Name}-{Endung}.{Endung}"_qs, {u"LIESMICH"_qs}, {u"LIESMICH-."_qs}, 1},
        {u"{Name} - {Endung}"_qs, {u"LIESMICH"_qs}, {u"LIESMICH -"_qs}, 1},
        {u"{Name} v.{Endung}"_qs, {u"LIESMICH"_qs}, {u"LIESMICH v."_qs}, 1},
        // A long name is shortened, not the text around it.
        {u"{Datum} {Name} Scan"_qs,
         {QString(240, u'x') + u".pdf"_qs},
         {u"* "_qs + QString(229, u'x') + u" Scan.pdf"_qs},
         1},
        {u"Scan {Name} {Datum}"_qs, {QString(120, u'ä') + u"ab"_qs}, {u"Scan "_qs + QString(116, u'ä') + u" *"_qs}, 1},
    };
    return rows;
}

TEST_F(RuleMatchingTest, RenamingHappensOnce)
{
    tree.file("jahr");
    const QString y = year("jahr");
    const auto renamed = [&](const CleanupRule &one) {
        const std::vector<Candidate> found = evaluate({one}).candidates;
        for (const Candidate &candidate : found)
            std::filesystem::rename(candidate.source, *candidate.destination);
        return !found.empty();
    };
    for (const RenamingRow &row : renamingRows()) {
        const TempTree folder(tree.path("home"));
        for (const QString &file : row.files)
            folder.file(file.toStdString());
        CleanupRule one = rule(u"R"_qs);
        one.sourcePath = textOf(folder.root());
        one.action = RuleAction::Rename;
        one.renamePattern = row.pattern;
        int rounds = 0;
        while (rounds < 4 && renamed(one))
            ++rounds;
        std::vector<std::string> names;
        for (const auto &entry : std::filesystem::directory_iterator(folder.root()))
            names.push_back(entry.path().filename().native());
        std::ranges::sort(names);
        const QString day = localDay(SystemClock().now()).toString(Qt::ISODate);
        std::vector<std::string> expected;
        for (QString name : row.named)
            expected.push_back(name.replace(u'*', day).replace(u'+', y).toStdString());
        EXPECT_EQ(names, expected) << row.pattern.toStdString();
        EXPECT_EQ(rounds, row.rounds) << row.pattern.toStdString();
    }
}

TEST_F(RuleMatchingTest, TheModelGetsItsFolder)
{
    tree.file("home/Downloads/a.pdf");
    CleanupRule ai = rule(u"Sortieren"_qs, {}, u"~/Documents"_qs);
    ai.action = RuleAction::AiSort;
    const std::vector<Candidate> found = evaluate({ai}).candidates;
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].reason, u"Sortieren (KI)"_qs);
    EXPECT_TRUE(found[0].needsAI);
    EXPECT_EQ(found[0].aiBase, tree.path("home/Documents"));
    EXPECT_FALSE(found[0].destination.has_value());
}

TEST_F(RuleMatchingTest, IsTheSameEveryTimeAndCanBeCancelled)
{
    for (int i = 0; i < 300; ++i)
        tree.file("home/Downloads/" + std::to_string(i % 7) + "/datei" + std::to_string(i));
    CleanupRule all = rule(u"R"_qs);
    all.includeSubfolders = true;
    const RuleEvaluation first = evaluate({all});
    EXPECT_EQ(first.candidates.size(), 300U);
    EXPECT_TRUE(std::ranges::is_sorted(first.candidates, {}, &Candidate::source));
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(evaluate({all}).candidates, first.candidates);
    JobControl control;
    control.cancel();
    const auto cancelled = RuleMatching(locations, clock).evaluateCounting({all}, &control);
    ASSERT_FALSE(cancelled.has_value());
    EXPECT_TRUE(cancelled.error().isCancelled());
}

} // namespace
