#include "MailScanner/MailStores.h"
#include "Support/TempTree.h"

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

class MailStoresTest : public testing::Test {
protected:
    void maildir(const std::string &path) const
    {
        for (const char *part : {"/cur", "/new", "/tmp"})
            home.folder(path + part);
    }
    QStringList found()
    {
        QStringList lines;
        for (const StoredMailbox &one : mailboxesOf(places))
            lines << one.ref.account + u": "_qs + one.ref.name + (one.indexed ? u" (Index)"_qs : QString());
        return lines;
    }

    TempTree home;
    MailPlaces places{home.root(), home.path(".local/share"), {}};
};

} // namespace

TEST_F(MailStoresTest, findsTheStoresOfEachProgram)
{
    maildir("Maildir");
    maildir("Maildir/.Belege");
    maildir("Mail/arbeit/INBOX");
    maildir("Mail/privat/Archiv/2026");
    maildir(".local/share/local-mail/inbox");
    home.file(".thunderbird/profiles.ini", "[Profile0]\nPath=p\n");
    home.file(".thunderbird/p/prefs.js", "user_pref(\"mail.server.server1.type\", \"pop3\");\n"
                                         "user_pref(\"mail.server.server1.name\", \"anna@x.de\");\n"
                                         "user_pref(\"mail.server.server1.directory-rel\", \"[ProfD]Mail/pop\");\n");
    home.file(".thunderbird/p/Mail/pop/Inbox", "From - x\n\n");
    EXPECT_EQ(found(),
              (QStringList{u"local-mail: inbox (Index)"_qs, u"anna@x.de: Inbox (Index)"_qs, u"Maildir: INBOX"_qs,
                           u"Maildir: Belege"_qs, u"arbeit: INBOX"_qs, u"privat: Archiv/2026"_qs}));
}

TEST_F(MailStoresTest, takesAnotherStoreAndNoMailboxTwice)
{
    EXPECT_TRUE(found().isEmpty());
    maildir("ablage/INBOX");
    maildir(".local/share/local-mail/inbox");
    home.link("Mail", "ablage");
    home.link("ablage/lokal", home.path(".local/share/local-mail").native());
    home.file("ablage/alt", "From x\n\n");
    places.other = home.path("ablage");
    EXPECT_EQ(found(), (QStringList{u"local-mail: inbox (Index)"_qs, u"ablage: INBOX"_qs, u"ablage: alt"_qs}));
}
