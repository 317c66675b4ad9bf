#include "Guard/Placeholders.h"

#include <gtest/gtest.h>

using namespace brellin;
using namespace std::chrono_literals;

namespace {

struct Row {
    QString from;
    QString to;
};

TEST(PlaceholdersTest, CleansNames)
{
    for (const Row &row : std::initializer_list<Row>{
             {u"Rechnung_2024 (3)"_qs, u"Rechnung 2024"_qs},
             {u"Foto - Kopie"_qs, u"Foto -"_qs},
             {u"Bericht Kopie (2)"_qs, u"Bericht"_qs},
             {u"Notiz copy Copy"_qs, u"Notiz"_qs},
             {u"Kopie von A"_qs, u"Kopie von A"_qs},
             {u"__a___b \t\u00a0 c_"_qs, u"a b c"_qs},
             {u"Teil (2) (3)"_qs, u"Teil (2)"_qs},
             {u"Teil (2) "_qs, u"Teil (2)"_qs},
             {u"Teil ()"_qs, u"Teil ()"_qs},
             {u"Teil (a2)"_qs, u"Teil (a2)"_qs},
             {u"(7)"_qs, u""_qs},
             {u"Teil 2)"_qs, u"Teil 2)"_qs},
         }) {
        EXPECT_EQ(cleanFileName(row.from), row.to) << row.from.toStdString();
    }
}

TEST(PlaceholdersTest, ExpandEveryOccurrenceInTheUsersTimeZone)
{
    // Already the new year in Berlin.
    const Instant date = std::chrono::sys_days{std::chrono::year{2025} / 12 / 31} + 23h + 30min;
    const Location file = "/home/anna/Über_mich (2).PDF";
    for (const Row &row : std::initializer_list<Row>{
             {u"{Jahr}/{Monat}/{Tag}"_qs, u"2026/01/01"_qs},
             {u"{Datum} {Datum}"_qs, u"2026-01-01 2026-01-01"_qs},
             {u"{Name}.{Endung}"_qs, u"Über mich.PDF"_qs},
             {u"{Kategorie}"_qs, u"Dokumente"_qs},
             {u"{jahr}{ Jahr}{Foo}"_qs, u"{jahr}{ Jahr}{Foo}"_qs},
             {u""_qs, u""_qs},
         }) {
        EXPECT_EQ(expand(row.from, file, date), row.to) << row.from.toStdString();
    }
    EXPECT_EQ(expand(u"{Name}|{Endung}|{Kategorie}"_qs, "/x/Ohne Punkt", date), u"Ohne Punkt||Sonstige"_qs);
}

} // namespace
