#include "MailScanner/MailProfile.h"
#include "Support/TempTree.h"

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

TEST(MailProfileTest, findsProfilesBesideAndElsewhere)
{
    const TempTree tree;
    const Location other = tree.folder("woanders/profil");
    tree.folder("root/abc.default");
    tree.file("root/profiles.ini",
              "[Install1]\nDefault=abc.default\n[Profile0]\r\nName=a\r\nIsRelative=1\r\nPath=abc.default\r\n"
              "[Profile1]\nIsRelative=0\nPath=" +
                  other.native() + "\n[Profile2]\nPath=fehlt\n[Profile3]\nPath=abc.default\n");
    EXPECT_EQ(profilesIn(tree.path("root")), (std::vector<Location>{tree.path("root/abc.default"), other}));
    EXPECT_TRUE(profilesIn(tree.path("fehlt")).empty());
}

TEST(MailProfileTest, readsAccountsFromTheProfilesSettings)
{
    const TempTree tree;
    tree.file("prefs.js", R"(// Mozilla User Preferences
user_pref("mail.server.server1.directory", "/alt/verschoben/Mail/Local Folders");
user_pref("mail.server.server1.directory-rel", "[ProfD]Mail/Local Folders");
user_pref("mail.server.server1.name", "Lokale \"Ordner\"");
user_pref("mail.server.server1.type", "none");
user_pref("mail.server.server12.type", "imap");
user_pref("mail.server.server12.directory-rel", "[ProfD]ImapMail/imap.example.org");
user_pref("mail.server.server12.name", "anna@example.org");
user_pref("mail.server.server12.port", 993);
user_pref("mail.server.server3.type", "pop3");
user_pref("mail.server.server3.directory", "/ablage/pop.example.org");
user_pref("mail.server.server4.type", "nntp");
user_pref("mail.server.server4.directory-rel", "[ProfD]News/x");
user_pref("mail.server.server5.name", "ohne Ordner");
)");
    EXPECT_EQ(accountsOf(tree.root()),
              (std::vector<ProfileAccount>{{u"Lokale \"Ordner\""_qs, tree.path("Mail/Local Folders")},
                                           {u"anna@example.org"_qs, tree.path("ImapMail/imap.example.org")},
                                           {u"pop.example.org"_qs, "/ablage/pop.example.org"}}));
}
