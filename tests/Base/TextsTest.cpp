#include "Base/CommaList.h"
#include "Base/German.h"
#include "Base/LocalDays.h"
#include "Base/Location.h"
#include "Base/RecentDate.h"

#include <gtest/gtest.h>

using namespace brellin;
using namespace std::chrono_literals;

namespace {

struct TextRow {
    const char *from;
    const char *to;
};

TEST(LocationTest, IsStandardisedByItsTextAlone)
{
    for (const TextRow &row : std::initializer_list<TextRow>{{"/", "/"},
                                                             {"//", "/"},
                                                             {"/a/", "/a"},
                                                             {"/a//b/./c", "/a/b/c"},
                                                             {"/a/../..", "/"},
                                                             {"/a/b/../c/.", "/a/c"},
                                                             {"/..a/b..", "/..a/b.."},
                                                             {"/.a/...", "/.a/..."}}) {
        EXPECT_EQ(standardised(row.from), Location(row.to)) << row.from;
        EXPECT_EQ(isStandardised(row.from), std::string_view(row.from) == row.to) << row.from;
        EXPECT_TRUE(isStandardised(row.to));
    }
    EXPECT_TRUE(standardised("a").is_absolute());
    EXPECT_FALSE(isStandardised("a"));
}

TEST(LocationTest, LiesBelowWholeComponentsOnly)
{
    EXPECT_TRUE(isAtOrBelow(Location("/a/b"), Location("/a")));
    EXPECT_TRUE(isAtOrBelow(Location("/a"), Location("/a")));
    EXPECT_TRUE(isAtOrBelow(Location("/a"), Location("/")));
    EXPECT_FALSE(isAtOrBelow(Location("/ab"), Location("/a")));
    EXPECT_FALSE(isAtOrBelow(Location("/a"), Location("/a/b")));
    EXPECT_FALSE(isAtOrBelow(Location("a"), Location("/")));
}

TEST(LocationTest, KeepsItsBytesThroughText)
{
    for (const char *const bytes : {"/a b/ü", "/\xFF/x%41", "file:///a", "/100%", "/zeile\nzwei", "", "/\xC3"})
        EXPECT_EQ(locationFromText(textOf(Location(bytes))).native(), bytes);
    EXPECT_EQ(textOf("/ü%20"), u"/ü%20"_qs) << "readable where it can be";
    EXPECT_EQ(textOf("/\xFF/ü%"), u"file:///%FF/%C3%BC%25"_qs);
    EXPECT_EQ(shownName("/a/\xFF.txt"), u"\uFFFD.txt"_qs);
    EXPECT_EQ(shownName("/"), u"/"_qs);
}

TEST(LocationTest, FoldsWhatPeopleTakeForTheSame)
{
    const QString wanted = folded(u"Überstraße"_qs);
    for (const char16_t *const same : {u"ÜBERSTRASSE", u"U\u0308berstraße", u"überSTRAẞE", u"überstrasse"})
        EXPECT_EQ(folded(QString::fromUtf16(same)), wanted);
    EXPECT_NE(folded(u"Uberstraße"_qs), wanted);
}

TEST(LocationTest, FindsExtensions)
{
    struct Row {
        const char *name, *extension, *stem;
    };
    for (const Row &row : std::initializer_list<Row>{{"a.PDF", "PDF", "a"},
                                                     {"a.tar.gz", "gz", "a.tar"},
                                                     {".profile", "", ".profile"},
                                                     {"..x", "", "..x"},
                                                     {".a.b", "b", ".a"},
                                                     {"name.", "", "name."},
                                                     {"Herr Dr. Maier", "", "Herr Dr. Maier"},
                                                     {"", "", ""},
                                                     {"ohne", "", "ohne"}}) {
        EXPECT_EQ(extensionOf(row.name), row.extension) << row.name;
        EXPECT_EQ(stemOf(row.name), row.stem) << row.name;
    }
    EXPECT_EQ(lowerExtensionOf("a.PDF\xC3\x84"), "pdf\xC3\x84");
}

TEST(CommaListTest, DropsWhatIsEmpty)
{
    EXPECT_EQ(commaList(u" Rechnung ,,\u00a0Beleg x\t, , "_qs), (QStringList{u"Rechnung"_qs, u"Beleg x"_qs}));
    EXPECT_TRUE(commaList(u" , "_qs).isEmpty());
}

TEST(GermanTest, Sizes)
{
    struct Row {
        qint64 bytes;
        QString text;
    };
    for (const Row &row : std::initializer_list<Row>{{0, u"0 Byte"_qs},
                                                     {1, u"1 Byte"_qs},
                                                     {999, u"999 Byte"_qs},
                                                     {1000, u"1 KB"_qs},
                                                     {12'400, u"12 KB"_qs},
                                                     {999'499, u"999 KB"_qs},
                                                     {999'500, u"1 MB"_qs},
                                                     {1'240'000, u"1,2 MB"_qs},
                                                     {100'000'000, u"100 MB"_qs},
                                                     {999'960'000, u"1 GB"_qs},
                                                     {3'450'000'000, u"3,45 GB"_qs},
                                                     {1'000'000'000'000'000, u"1 PB"_qs}}) {
        EXPECT_EQ(sizeText(row.bytes), row.text) << row.bytes;
    }
    EXPECT_EQ(counted(1, u"Datei"_qs, u"Dateien"_qs), u"1 Datei"_qs);
    EXPECT_EQ(counted(0, u"Datei"_qs, u"Dateien"_qs), u"0 Dateien"_qs);
    EXPECT_EQ(counted(1'234'567, u"Datei"_qs, u"Dateien"_qs), u"1.234.567 Dateien"_qs);
}

TEST(GermanTest, DatesAreThoseOfTheUsersTimeZone)
{
    // Berlin is two hours ahead of UTC in summer.
    const Instant late = std::chrono::sys_days{std::chrono::year{2026} / 9 / 2} + 22h + 5min;
    EXPECT_EQ(longDate(late), u"3. September 2026"_qs);
    EXPECT_EQ(longDateTime(late), u"3. September 2026, 00:05"_qs);
    EXPECT_EQ(localDay(late), QDate(2026, 9, 3));
    EXPECT_EQ(longDate(Instant(-1ns)), u"1. Januar 1970"_qs);
}

TEST(GermanTest, CachedDaysEndAtTheLocalMidnight)
{
    // In 2026 Berlin's clocks change on 29 March and 25 October: days of 23 and of 25 hours.
    for (const auto change : {std::chrono::year{2026} / 3 / 29, std::chrono::year{2026} / 10 / 25}) {
        LocalDays days;
        const Instant around = std::chrono::sys_days{change};
        for (auto hours = -30h; hours < 50h; ++hours)
            EXPECT_EQ(days.of(around + hours), localDay(around + hours)) << hours.count();
    }
}

TEST(GermanTest, RecentDaysHaveNames)
{
    // An hour after midnight in Berlin, but still the day before in UTC.
    const Instant now = std::chrono::sys_days{std::chrono::year{2026} / 9 / 2} + 23h;
    EXPECT_EQ(recentDate(now - 20min, now), u"heute, 00:40"_qs);
    EXPECT_EQ(recentDate(now - 2h, now), u"gestern, 23:00"_qs);
    EXPECT_EQ(recentDate(now - 24h, QDate(2026, 9, 3)), u"gestern, 01:00"_qs);
    EXPECT_EQ(recentDate(now - 26h, now), u"1. September 2026"_qs);
    EXPECT_EQ(recentDate(now + 24h, now, OlderDay::LongWithTime), u"4. September 2026, 01:00"_qs);
    EXPECT_EQ(recentDate(now - 26h, now, OlderDay::Short), u"1. Sept. 2026"_qs);
}

TEST(InstantTest, SurvivesItsStoredForms)
{
    const Instant instant = std::chrono::sys_days{std::chrono::year{2026} / 9 / 3} + 14h + 5min + 9s;
    EXPECT_EQ(isoText(instant), u"2026-09-03T14:05:09Z"_qs);
    EXPECT_EQ(isoText(instant + 250ms), u"2026-09-03T14:05:09.250Z"_qs);
    EXPECT_EQ(instantFromIso(u"2026-09-03T14:05:09.250Z"_qs), instant + 250ms);
    EXPECT_EQ(instantFromIso(u"2026-09-03T16:05:09+02:00"_qs), instant);
    EXPECT_FALSE(instantFromIso(u"gestern"_qs));
    EXPECT_EQ(instantFromIso(u"9999-12-31T00:00:00Z"_qs), Instant::max());
    EXPECT_EQ(instantFromIso(u"0001-01-01T00:00:00Z"_qs), Instant::min());
    EXPECT_EQ(instantFrom({std::numeric_limits<time_t>::max(), 999'999'999}), Instant::max());
    EXPECT_EQ(instantFrom({std::numeric_limits<time_t>::min(), 0}), Instant::min());
    EXPECT_EQ(instantFrom({-2, 500'000'000}), Instant(-1500ms));
    EXPECT_EQ(storedSeconds(std::chrono::sys_days{std::chrono::year{2001} / 1 / 2}), 86400.0);
    EXPECT_EQ(instantFromStoredSeconds(storedSeconds(instant + 123456us)), instant + 123456us);
    EXPECT_EQ(instantFromStoredSeconds(-86400.5),
              Instant(std::chrono::sys_days{std::chrono::year{2000} / 12 / 31}) - 500ms);
}

} // namespace
