#include "Features/Screens/NetworkPage.h"

#include "Look/Theme.h"
#include "Places/NetworkServers.h"
#include "Support/TempTree.h"
#include "Support/WaitUntil.h"
#include "System/MemoryUserDefaults.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

const std::string login =
    "printf 'Authentication Required\\nEnter user and password for “nas”:\\nUser [anna]: '; heard\n"
    "printf 'Domain [WORKGROUP]: '; heard\n"
    "printf 'Password: '; heard; echo\n";

/// Replaces the system's program by a script.
class NetworkPageTest : public testing::Test {
protected:
    NetworkPageTest()
    {
        Theme::install(*qApp);
        page = std::make_unique<NetworkPage>(servers, nullptr);
        QObject::connect(page.get(), &NetworkPage::connected,
                         [this](const Location &place) { places.push_back(place); });
        page->resize(900, 700);
        page->show();
        page->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(page.get()));
    }

    void script(const std::string &mount)
    {
        const Location program = tree.file(
            "gio", "#!/bin/sh\nheard() { IFS= read -r line; echo \"$line\" >> " + tree.path("heard").native() +
                       "; }\necho \"$@\" >> " + tree.path("calls").native() +
                       "\nif [ \"$1\" = info ]; then\necho 'local path: /run/gvfs/nas'\nexit 0\nfi\n" + mount + "\n");
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    }
    template <class Kind>
    Kind *find(const char *name) const
    {
        Kind *const found = page->findChild<Kind *>(QString::fromUtf8(name));
        EXPECT_TRUE(found) << name;
        return found;
    }
    void type(const QString &address) const
    {
        find<QLineEdit>("networkAddress")->setText(address);
        QTest::keyClick(find<QLineEdit>("networkAddress"), Qt::Key_Return);
    }
    void press(const char *button) const { QTest::mouseClick(find<QPushButton>(button), Qt::LeftButton); }
    QWidget *sheet() const { return page->findChild<QWidget *>(QStringLiteral("networkQuestion")); }
    bool asked() const
    {
        return waitUntil([this] { return sheet() && sheet()->isVisible(); });
    }
    bool idle() const
    {
        return waitUntil([this] { return servers.connecting.get().isEmpty(); });
    }
    QListView *list() const { return find<QListView>("networkServers"); }
    QString message() const
    {
        return find<QLabel>("networkError")->isVisible() ? find<QLabel>("networkError")->text() : QString();
    }

    TempTree tree;
    MemoryUserDefaults defaults;
    SystemProcessRunner processes;
    NetworkServers servers{defaults, processes, tree.path("gio").native()};
    std::unique_ptr<NetworkPage> page;
    std::vector<Location> places;
};

} // namespace

TEST_F(NetworkPageTest, aServerIsConnectedAndThenRemembered)
{
    script("exit 0");
    EXPECT_FALSE(find<QWidget>("networkRemembered")->isVisible());
    press("networkKind-sftp");
    EXPECT_EQ(find<QLineEdit>("networkAddress")->text(), QStringLiteral("sftp://"));
    type(QStringLiteral("smb://nas/Musik"));
    ASSERT_TRUE(waitUntil([this] { return !places.empty(); }));
    EXPECT_EQ(places, std::vector<Location>{"/run/gvfs/nas"});
    EXPECT_EQ(find<QLineEdit>("networkAddress")->text(), QString());
    ASSERT_TRUE(find<QWidget>("networkRemembered")->isVisible());
    const QModelIndex row = list()->model()->index(0, 0);
    EXPECT_EQ(row.data(Qt::AccessibleTextRole).toString(), QStringLiteral("Musik auf nas, smb://nas/Musik, verbunden"));

    const QPoint middle = list()->visualRect(row).center();
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, middle);
    QTest::mouseDClick(list()->viewport(), Qt::LeftButton, {}, middle);
    ASSERT_TRUE(waitUntil([this] { return places.size() == 2; }));
    press("networkDisconnect");
    ASSERT_TRUE(waitUntil([&] { return tree.content("calls").contains("--unmount"); }));
    ASSERT_TRUE(waitUntil([this] { return !find<QPushButton>("networkDisconnect")->isVisible(); }));
    list()->setFocus();
    QTest::keyClick(list(), Qt::Key_Delete);
    EXPECT_TRUE(servers.servers.get().empty());
    EXPECT_FALSE(find<QWidget>("networkRemembered")->isVisible());
}

TEST_F(NetworkPageTest, whatTheServerAsksIsAnsweredOnASheet)
{
    script(login + login + "exit 0");
    type(QStringLiteral("smb://nas/Musik"));
    ASSERT_TRUE(asked());
    EXPECT_EQ(find<QLineEdit>("networkUser")->text(), QStringLiteral("anna"));
    auto *const password = find<QLineEdit>("networkPassword");
    EXPECT_EQ(password->echoMode(), QLineEdit::Password);
    password->setText(QStringLiteral("falsch"));
    QTest::keyClick(password, Qt::Key_Return);
    ASSERT_TRUE(waitUntil([this] { return page->findChild<QLabel *>(QStringLiteral("networkRefused")) != nullptr; }));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(find<QLineEdit>("networkPassword")->text(), QString());
    find<QLineEdit>("networkUser")->setText(QStringLiteral("berta"));
    find<QLineEdit>("networkPassword")->setText(QStringLiteral("geheim"));
    press("networkLogin");
    ASSERT_TRUE(waitUntil([this] { return !places.empty(); }));
    EXPECT_TRUE(tree.content("heard").ends_with("berta\n\ngeheim\n")) << tree.content("heard");
    EXPECT_FALSE(tree.content("calls").contains("geheim"));
    EXPECT_FALSE(defaults.json(QStringLiteral("networkServers")).value_or("").contains("geheim"));
}

TEST_F(NetworkPageTest, refusingAnAnswerIsNoFailure)
{
    script(login + "exit 2");
    type(QStringLiteral("smb://nas/Musik"));
    ASSERT_TRUE(asked());
    QTest::keyClick(find<QLineEdit>("networkPassword"), Qt::Key_Escape);
    ASSERT_TRUE(idle());
    ASSERT_TRUE(waitUntil([this] { return find<QPushButton>("networkConnect")->isVisible(); }));
    EXPECT_EQ(message(), QString());
    EXPECT_TRUE(servers.servers.get().empty());
    EXPECT_TRUE(places.empty());

    script("printf 'x\\n' >> " + tree.path("started").native() + "; exec sleep 30");
    type(QStringLiteral("smb://nas/Musik"));
    ASSERT_TRUE(waitUntil([this] { return tree.has("started"); }));
    EXPECT_TRUE(find<QWidget>("networkProgress")->isVisible());
    press("networkStop");
    ASSERT_TRUE(idle());
    EXPECT_EQ(message(), QString());
}

TEST_F(NetworkPageTest, aFailureIsSaidAndAPageThatGoesGivesUp)
{
    type(QStringLiteral("nas/Musik"));
    EXPECT_TRUE(message().contains(QStringLiteral("smb://server/freigabe"))) << message().toStdString();
    script("echo 'gio: smb://nas/Musik: Connection refused' >&2; exit 2");
    type(QStringLiteral("smb://nas/Musik"));
    ASSERT_TRUE(waitUntil([this] { return message().contains(QStringLiteral("antwortet nicht")); }));
    EXPECT_EQ(find<QLineEdit>("networkAddress")->text(), QStringLiteral("smb://nas/Musik")) << "to be mended";

    script(login + "exit 0");
    type(QStringLiteral("smb://nas/Musik"));
    ASSERT_TRUE(asked());
    page.reset();
    EXPECT_TRUE(idle());
    EXPECT_TRUE(servers.servers.get().empty());
}

TEST_F(NetworkPageTest, aGuestNeedsNoNameAndAnUnknownServerIsAChoice)
{
    script("[ \"$2\" = --anonymous ] && exit 0\n" + login);
    type(QStringLiteral("smb://nas/Musik"));
    ASSERT_TRUE(asked());
    QTest::mouseClick(find<QCheckBox>("networkGuest"), Qt::LeftButton, {}, QPoint(10, 10));
    EXPECT_FALSE(find<QLineEdit>("networkPassword")->isEnabled());
    press("networkLogin");
    ASSERT_TRUE(waitUntil([this] { return places.size() == 1; }));

    script("printf 'Identity Verification Failed\\n[1] Log In Anyway\\n[2] Cancel Login\\nChoice: '; heard; exit 0");
    type(QStringLiteral("sftp://neu/"));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ASSERT_TRUE(asked());
    EXPECT_EQ(find<QPushButton>("networkChoice0")->text(), QStringLiteral("Trotzdem anmelden"));
    press("networkChoice1");
    ASSERT_TRUE(idle());
    EXPECT_EQ(tree.content("heard"), "2\n");
}

TEST_F(NetworkPageTest, onlyThePageThatConnectsAsks)
{
    script(login);
    QObject other;
    servers.connectTo(QStringLiteral("smb://fremd/x"), &other, [](const auto &) {});
    ASSERT_TRUE(waitUntil([this] { return servers.question.get().has_value(); }));
    EXPECT_FALSE(sheet());
    find<QLineEdit>("networkAddress")->setText(QStringLiteral("smb://nas"));
    EXPECT_FALSE(find<QPushButton>("networkConnect")->isEnabled()) << "one at a time";
    page.reset();
    EXPECT_FALSE(servers.connecting.get().isEmpty()) << "the other goes on";
    servers.cancel();
    EXPECT_TRUE(idle());
}
