#include "FileOperations/BatchRenamePlan.h"

#include <gtest/gtest.h>

using namespace brellin;
using Mode = BatchRenameFields::Mode;
using Conflict = BatchRenameRow::Conflict;

namespace {

BatchRenameFields fieldsOf(Mode mode)
{
    BatchRenameFields fields;
    fields.mode = mode;
    return fields;
}

std::vector<BatchRenameEntry> entriesOf(const std::vector<std::string> &names)
{
    std::vector<BatchRenameEntry> entries;
    for (const std::string &name : names)
        entries.push_back({Location("/f") / name, QDate(2026, 9, 14)});
    return entries;
}

std::vector<std::string> newNames(const std::vector<std::string> &names, const BatchRenameFields &fields)
{
    std::vector<std::string> result;
    for (const BatchRenameRow &row : planBatchRename(entriesOf(names), fields, {}).rows)
        result.push_back(row.name);
    return result;
}

using Names = std::vector<std::string>;

} // namespace

TEST(BatchRenamePlanTest, numbersWithTheDefaultsAndWithout)
{
    BatchRenameFields fields = fieldsOf(Mode::Number);
    EXPECT_EQ(newNames({"x.JPG", "ordner"}, fields), (Names{"01.JPG", "02"}));
    fields.base = QStringLiteral("Achensee 2026");
    fields.startNumber = 9;
    fields.digits = 3;
    EXPECT_EQ(newNames({"b.jpg", "a.tar"}, fields), (Names{"Achensee 2026 – 009.jpg", "Achensee 2026 – 010.tar"}));
    fields.base.clear();
    fields.startNumber = 99;
    fields.digits = 0;
    EXPECT_EQ(newNames({"a.b", "c.d"}, fields), (Names{"99.b", "100.d"}));
    fields.startNumber = -1;
    fields.digits = 2;
    EXPECT_EQ(newNames({"a.b", "c.d"}, fields), (Names{"-01.b", "00.d"}));
}

TEST(BatchRenamePlanTest, replacesEveryOccurrenceAndLeavesOtherBytesAlone)
{
    BatchRenameFields fields = fieldsOf(Mode::Replace);
    EXPECT_EQ(newNames({"a.txt"}, fields), (Names{"a.txt"}));
    fields.find = QStringLiteral("ü");
    fields.replaceWith = QStringLiteral("ue");
    // Composed, decomposed, and beside invalid UTF-8.
    EXPECT_EQ(newNames({"für-für.txt", "fu\u0308r.txt", "\xFF\u00FC.txt"}, fields),
              (Names{"fuer-fuer.txt", "fuer.txt", "\xFFue.txt"}));
    fields.find = QStringLiteral("u");
    fields.replaceWith = QStringLiteral("o");
    EXPECT_EQ(newNames({"gut fu\u0308r u.txt"}, fields), (Names{"got fu\u0308r o.txt"}));
    fields.find = QStringLiteral("aa");
    fields.replaceWith = QStringLiteral("a");
    EXPECT_EQ(newNames({"aaaa.txt"}, fields), (Names{"aa.txt"}));
}

TEST(BatchRenamePlanTest, addsAroundTheStemAndPutsTheDayInFront)
{
    BatchRenameFields fields = fieldsOf(Mode::Add);
    fields.prefix = QStringLiteral("Alt ");
    fields.suffix = QStringLiteral(" (Kopie)");
    EXPECT_EQ(newNames({"Brief.pdf", ".profile", "\xFE.x"}, fields),
              (Names{"Alt Brief (Kopie).pdf", "Alt .profile (Kopie)", "Alt \xFE (Kopie).x"}));
    EXPECT_EQ(newNames({"IMG_1234.jpg"}, fieldsOf(Mode::Date)), (Names{"2026-09-14 IMG_1234.jpg"}));
}

TEST(BatchRenamePlanTest, marksConflictsInTheirRowsAndShowsTheFirstCheckThatFails)
{
    struct Row {
        const char *find;
        const char *by;
        Names names;
        FolderNames folder;
        std::vector<Conflict> conflicts;
        const char *error;
    };
    const auto ignoring = FolderNames::Case::Ignored;
    const char *invalid = "Namen dürfen nicht leer sein und keine „/“ oder „:“ enthalten.";
    const char *equal = "Mehrere Dateien würden gleich heißen.";
    const std::vector<Row> rows{
        {"a", "b", {"a", "c"}, {{"a", "c"}}, {Conflict::None, Conflict::None}, nullptr},
        {"a", "", {"a", "c"}, {}, {Conflict::InvalidName, Conflict::None}, invalid},
        {"a", "x/y", {"a"}, {}, {Conflict::InvalidName}, invalid},
        {"a", "1:2", {"a"}, {}, {Conflict::InvalidName}, invalid},
        {"a", "..", {"a"}, {}, {Conflict::InvalidName}, invalid},
        {"a", "b", {"a", "b"}, {{"a", "b"}}, {Conflict::Equal, Conflict::Equal}, equal},
        {"a", "b", {"a"}, {{"a", "b"}}, {Conflict::Taken}, "„b“ gibt es in diesem Ordner schon."},
        // The present owner of the name is renamed as well.
        {"1", "2", {"1.txt", "x2.txt"}, {{"1.txt", "x2.txt"}}, {Conflict::None, Conflict::None}, nullptr},
        // Conflicts are reported by kind, not in the order of rows.
        {"a", "b", {"a", "b", ":"}, {}, {Conflict::Equal, Conflict::Equal, Conflict::InvalidName}, invalid},
        {"a", "B", {"a"}, {{"a", "b"}}, {Conflict::None}, nullptr},
        {"a", "B", {"a"}, {{"a", "b"}, ignoring}, {Conflict::Taken}, "„B“ gibt es in diesem Ordner schon."},
        {"ä", "Ä", {"ä"}, {{"ä"}, ignoring}, {Conflict::None}, nullptr},
    };
    for (const Row &row : rows) {
        BatchRenameFields fields = fieldsOf(Mode::Replace);
        fields.find = QString::fromUtf8(row.find);
        fields.replaceWith = QString::fromUtf8(row.by);
        const BatchRenamePlan plan = planBatchRename(entriesOf(row.names), fields, {{"/f", row.folder}});
        std::vector<Conflict> conflicts;
        for (const BatchRenameRow &one : plan.rows)
            conflicts.push_back(one.conflict);
        EXPECT_EQ(conflicts, row.conflicts) << row.find << " → " << row.by;
        EXPECT_EQ(plan.error.value_or(QString()), QString::fromUtf8(row.error)) << row.find << " → " << row.by;
    }
}

TEST(BatchRenamePlanTest, tellsFoldersApartAndRefusesWhatNoDiskHolds)
{
    BatchRenameFields fields = fieldsOf(Mode::Replace);
    fields.find = QStringLiteral("a");
    fields.replaceWith = QStringLiteral("b");
    EXPECT_EQ(planBatchRename({{"/f/a", {}}, {"/g/a", {}}}, fields, {{"/f", {{"a"}}}, {"/g", {{"a"}}}}).error,
              std::nullopt);
    fields.replaceWith = QString(200, u'ü');
    EXPECT_EQ(planBatchRename({{"/f/a", {}}}, fields, {}).rows.front().conflict, Conflict::TooLong);
}

TEST(BatchRenamePlanTest, refusesAFolderWithItsContentAndAnEntryTwice)
{
    BatchRenameFields fields = fieldsOf(Mode::Add);
    fields.prefix = QStringLiteral("x ");
    const BatchRenamePlan nested = planBatchRename(entriesOf({"a", "b/c/d", "b", "bc"}), fields, {});
    EXPECT_EQ(nested.error, QStringLiteral("„d“ liegt in einem Ordner, der auch umbenannt werden soll."));
    EXPECT_EQ(nested.rows[1].conflict, Conflict::Inside);
    EXPECT_EQ(nested.rows[2].conflict, Conflict::None);
    EXPECT_EQ(nested.rows[3].conflict, Conflict::None);
    // An entry that is in the batch twice would get two names.
    const BatchRenamePlan twice = planBatchRename(entriesOf({"a", "b", "a"}), fieldsOf(Mode::Number), {});
    EXPECT_EQ(twice.error, QStringLiteral("„a“ ist zweimal ausgewählt."));
    EXPECT_EQ(twice.rows[2].conflict, Conflict::Twice);
}
