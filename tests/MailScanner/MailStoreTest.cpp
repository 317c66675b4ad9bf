#include "MailScanner/MailStore.h"
#include "Support/TempTree.h"

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

void maildir(const TempTree &tree, const std::string &path)
{
    for (const char *part : {"/cur", "/new", "/tmp"})
        tree.folder(path + part);
}

QStringList namesOf(const std::vector<StoredMailbox> &boxes)
{
    QStringList names;
    for (const StoredMailbox &one : boxes)
        names << one.ref.name;
    return names;
}

} // namespace

TEST(MailStoreTest, findsMaildirsInEachSpelling)
{
    const TempTree tree;
    maildir(tree, "plus");
    maildir(tree, "plus/.Archiv");
    maildir(tree, "plus/.Archiv.2026.Entw&APw-rfe");
    EXPECT_EQ(namesOf(maildirsBelow(tree.path("plus"), {})),
              (QStringList{u"INBOX"_qs, u"Archiv"_qs, u"Archiv/2026/Entwürfe"_qs}));

    maildir(tree, "nested/INBOX");
    maildir(tree, "nested/Archiv/2026");
    tree.folder("nested/leer");
    EXPECT_EQ(namesOf(maildirsBelow(tree.path("nested"), {})), (QStringList{u"Archiv/2026"_qs, u"INBOX"_qs}));

    maildir(tree, "directory/inbox");
    maildir(tree, "directory/.inbox.directory/Büro");
    EXPECT_EQ(namesOf(maildirsBelow(tree.path("directory"), {})), (QStringList{u"inbox/Büro"_qs, u"inbox"_qs}));
}

TEST(MailStoreTest, followsLinksButReadsEachFolderOnce)
{
    const TempTree tree;
    maildir(tree, "fern/INBOX");
    tree.link("fern/INBOX/zurueck", "..");
    tree.link("store", "fern");
    tree.link("fern/kreis", "kreis");
    EXPECT_EQ(namesOf(maildirsBelow(tree.path("store"), {})), QStringList{u"INBOX"_qs});
    EXPECT_TRUE(maildirsBelow(tree.path("fehlt"), {}).empty());
}

TEST(MailStoreTest, findsMboxesButNoIndexes)
{
    const TempTree tree;
    tree.file("Mail/INBOX", "From - Mon\nSubject: a\n\nb\n");
    tree.file("Mail/INBOX.msf", "// <!-- <mdb:mork:z");
    tree.file("Mail/Leer");
    tree.file("Mail/Leer.msf", "x");
    tree.file("Mail/msgFilterRules.dat", "version=\"9\"");
    tree.file("Mail/leere Notiz");
    tree.file("Mail/INBOX.sbd/2026", "From x\n\n");
    tree.file("Mail/INBOX.sbd/2026.sbd/M&AOQ-rz", "From x\n\n");
    tree.folder("Mail/Maildir/cur");
    tree.folder("Mail/Maildir/tmp");
    const std::vector<StoredMailbox> found = mboxesBelow(tree.path("Mail"), u"Zuhause"_qs);
    EXPECT_EQ(namesOf(found),
              (QStringList{u"INBOX"_qs, u"INBOX/2026"_qs, u"INBOX/2026/März"_qs, u"Leer"_qs, u"Maildir"_qs}));
    EXPECT_EQ(found.front(),
              (StoredMailbox{{u"Zuhause"_qs, u"INBOX"_qs}, tree.path("Mail/INBOX"), MailLayout::Mbox, false}));
    EXPECT_EQ(found.back().layout, MailLayout::Maildir);
}
