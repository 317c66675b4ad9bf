#include "Disk/MayRemove.h"

#include "Base/Descriptor.h"

#include "Support/TempTree.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// Whether a process of another user may remove the entry.
bool mayAnother(const Location &entry)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(::seteuid(65534) == 0 && checkMayRemove(entry) ? 0 : 1);
    int status = 1;
    ::waitpid(child, &status, 0);
    return status == 0;
}

bool setLock(const Location &entry, long lock)
{
    const Descriptor open(::open(entry.c_str(), O_RDONLY | O_CLOEXEC));
    return ::ioctl(open.number(), FS_IOC_SETFLAGS, &lock) == 0;
}

} // namespace

TEST(MayRemoveTest, knowsThatAStickyFolderKeepsWhatIsSomebodyElses)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root gives files away";
    const TempTree tree;
    tree.lines({"f/von root=1", "f/eigen=2"});
    std::filesystem::permissions(tree.root(), std::filesystem::perms::all);
    ASSERT_EQ(::chmod(tree.path("f").c_str(), 01777), 0);
    ASSERT_EQ(::chown(tree.path("f/eigen").c_str(), 65534, 65534), 0);
    EXPECT_FALSE(mayAnother(tree.path("f/von root")));
    EXPECT_TRUE(mayAnother(tree.path("f/eigen")));
    EXPECT_TRUE(checkMayRemove(tree.path("f/von root")));
    ASSERT_EQ(::chmod(tree.path("f").c_str(), 0777), 0);
    EXPECT_TRUE(mayAnother(tree.path("f/von root")));
}

TEST(MayRemoveTest, knowsWhatIsLockedAgainstChanges)
{
    const TempTree tree;
    tree.lines({"f/datei=1", "f/protokoll=2"});
    for (const auto &[locked, lock] : {std::pair{"f/datei", FS_IMMUTABLE_FL}, std::pair{"f", FS_APPEND_FL}}) {
        if (!setLock(tree.path(locked), lock))
            GTEST_SKIP() << "no such locks here";
        const Result<void> may = checkMayRemove(tree.path("f/datei"));
        EXPECT_EQ(::unlink(tree.path("f/datei").c_str()), -1);
        ASSERT_TRUE(setLock(tree.path(locked), 0));
        ASSERT_FALSE(may) << locked;
        EXPECT_TRUE(may.error().message.endsWith(u"ist gegen Änderungen gesperrt."));
    }
    EXPECT_TRUE(checkMayRemove(tree.path("f/datei")));
}
