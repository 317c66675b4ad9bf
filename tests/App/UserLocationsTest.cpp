#include "App/UserLocations.h"

#include "Support/TempTree.h"

#include <gtest/gtest.h>

using namespace brellin;
using brellin::test::TempTree;

TEST(UserLocationsTest, closesTheSystemAndNothingOfTheUsers)
{
    // A home folder below a system folder, as on some systems.
    const UserLocations locations("/var/home/anna", 4711);
    struct Row {
        const char *entry;
        bool allowed;
    };
    for (const Row &row : std::initializer_list<Row>{
             {"/var/home/anna/Dokumente/a.txt", true},
             {"/var/home/anna/.config/fonts", true},
             {"/var/home/anna/.bashrc", true},
             {"/var/home/anna/Library/Fonts/a.ttf", true},
             {"/srv/daten/a.txt", true},
             {"/mnt/platte/a.txt", true},
             {"/media/anna/Stick/a.txt", true},
             {"/run/media/anna/Stick/a.txt", true},
             {"/run/user/4711/gvfs/smb-share:server=nas,share=fotos/a.txt", true},
             {"/run/user/4711/doc/1a2b/a.txt", true},
             {"/tmp/a.txt", true},
             {"/var/tmp/a.txt", true},
             {"/dev/shm/a.txt", true},
             // The exceptions themselves, the home folder and folders above it are refused.
             {"/var/home/anna", false},
             {"/var/home", false},
             {"/run/media", false},
             {"/run/user/4711/gvfs", false},
             {"/dev/shm", false},
             {"/run/user/4711/bus", false},
             {"/run/user/4712/gvfs/a.txt", false},
             {"/run/systemd/a.txt", false},
             {"/usr/share/a.txt", false},
             {"/usr", false},
             {"/etc/hosts", false},
             {"/dev/sda", false},
             {"/var/lib/a.txt", false},
             {"/opt/programm", false},
             {"/", false},
             {"", false},
             {"a.txt", false},
         }) {
        EXPECT_EQ(locations.mayChange(row.entry), row.allowed) << row.entry;
    }
}

TEST(UserLocationsTest, aHomeThatIsASystemFolderOpensNothing)
{
    for (const char *const home : {"/", "/usr", "/etc", ""}) {
        const UserLocations locations(home, 4711);
        EXPECT_FALSE(locations.mayChange("/usr/share/a.txt")) << home;
        EXPECT_FALSE(locations.mayChange("/etc/hosts")) << home;
        EXPECT_TRUE(locations.mayChange("/srv/daten/a.txt")) << home;
    }
}

TEST(UserLocationsTest, looksWhereLinksLead)
{
    const TempTree tree;
    tree.lines({"echt/anna/Dokumente/", "heim->echt", "daten/", "echt/anna/zu->/usr/share", "daten/her->../echt/anna"});
    const UserLocations locations(tree.path("heim/anna"), 4711);
    EXPECT_TRUE(locations.mayChange(tree.path("heim/anna/Dokumente/a.txt")));
    EXPECT_TRUE(locations.mayChange(tree.path("daten/her/.config")));
    EXPECT_TRUE(locations.mayChange(tree.path("heim/anna/zu"))); // the symlink itself
    EXPECT_FALSE(locations.mayChange(tree.path("heim/anna/zu/a.txt")));
    EXPECT_FALSE(locations.mayChange(tree.path("heim/anna/zu/../anna/a.txt"))); // for the kernel "/usr/anna/a.txt"
    EXPECT_FALSE(locations.mayChange(tree.path("echt/anna")));                  // the home folder by its other name
    EXPECT_FALSE(locations.mayChange(tree.path("echt")));
}
