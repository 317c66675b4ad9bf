#include "MailScanner/MailSettings.h"
#include "System/MemoryUserDefaults.h"

#include <gtest/gtest.h>

using namespace brellin;

namespace {

class MailSettingsTest : public testing::Test {
protected:
    MailSettings read() const { return MailSettings::read(defaults, folders); }

    MemoryUserDefaults defaults;
    KnownFolders folders = KnownFolders::ofThisUser();
};

} // namespace

TEST_F(MailSettingsTest, filesBelowTheUsersOwnDocumentsWhereThereAreSome)
{
    folders.eigeneDateien.reset();
    const Location documents = folders.dir(StandardFolder::Documents);
    EXPECT_EQ(read().privatePath, textOf(documents));
    EXPECT_EQ(read().businessPath, textOf(documents / "Geschäftlich"));
    folders.eigeneDateien = "/cloud/Eigene Dateien";
    EXPECT_EQ(read().pathOf(MailArea::Privat), u"/cloud/Eigene Dateien"_qs);
    EXPECT_EQ(read().pathOf(MailArea::Geschaeftlich), u"/cloud/Eigene Dateien/Geschäftlich"_qs);
}

TEST_F(MailSettingsTest, countsANonsensicalNumberOfDaysAsTheDefault)
{
    for (const int days : {0, -5, 3651, 1'000'000}) {
        ASSERT_TRUE(defaults.setValue(MailKeys::days, days));
        EXPECT_EQ(read().days, 90) << days;
    }
    ASSERT_TRUE(defaults.setValue(MailKeys::days, 3650));
    EXPECT_EQ(read().days, 3650);
}

TEST_F(MailSettingsTest, searchesInboxesAndExtraFoldersUntilOneIsUnticked)
{
    ASSERT_TRUE(defaults.setValue(MailKeys::extraFolders, u" Belege ,01_Rechnungen"_qs));
    const MailBoxRef inbox{u"Arbeit"_qs, u"Posteingang"_qs};
    const MailBoxRef receipts{u"Arbeit"_qs, u"BELEGE"_qs};
    const MailBoxRef sent{u"Arbeit"_qs, u"Gesendet"_qs};
    const MailBoxRef lookalike{u"Arbeit"_qs, u"inbox"_qs};
    const std::vector<MailBoxRef> available{inbox, receipts, sent, lookalike};
    EXPECT_TRUE(read().isSelected(inbox));
    EXPECT_TRUE(read().isSelected(receipts));
    EXPECT_FALSE(read().isSelected(sent));
    EXPECT_FALSE(read().isSelected(lookalike)) << "names of inboxes are compared exactly";

    const QSet<QString> without = read().selectionWith(inbox, false, available);
    EXPECT_EQ(without, QSet<QString>{receipts.id()});
    ASSERT_TRUE(defaults.setValue(MailKeys::selectedBoxes, QStringList(without.begin(), without.end())));
    EXPECT_FALSE(read().isSelected(inbox));
    EXPECT_EQ(read().selectionWith(sent, true, available), (QSet<QString>{receipts.id(), sent.id()}));

    ASSERT_TRUE(defaults.setValue(MailKeys::selectedBoxes, QStringList()));
    EXPECT_EQ(read().selectedBoxes, QSet<QString>()) << "none selected is not the default selection";
    EXPECT_FALSE(read().isSelected(receipts));
}

TEST_F(MailSettingsTest, businessListsWinOverTheRulesArea)
{
    MailRule rule;
    rule.area = MailArea::Privat;
    ASSERT_TRUE(defaults.setValue(MailKeys::businessAccounts, u"Firma"_qs));
    ASSERT_TRUE(defaults.setValue(MailKeys::businessSenders, u"INWX, Meta"_qs));
    EXPECT_EQ(read().suggestArea(u"Meine FIRMA"_qs, u"stadtwerke"_qs, rule), MailArea::Geschaeftlich);
    EXPECT_EQ(read().suggestArea(u"Zuhause"_qs, u"INWX GmbH <a@b>"_qs, rule), MailArea::Geschaeftlich);
    EXPECT_EQ(read().suggestArea(u"Zuhause"_qs, u"stadtwerke"_qs, rule), MailArea::Privat);
    rule.area = MailArea::Geschaeftlich;
    EXPECT_EQ(read().suggestArea(u"Zuhause"_qs, u"stadtwerke"_qs, rule), MailArea::Geschaeftlich);
    rule.area.reset();
    EXPECT_EQ(read().suggestArea(u"Zuhause"_qs, u"stadtwerke"_qs, rule), MailArea::Privat);
}
