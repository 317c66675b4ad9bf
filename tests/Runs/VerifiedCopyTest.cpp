#include "Runs/VerifiedCopy.h"

#include "Support/FailingCalls.h"
#include "Support/TempTree.h"

#include <gtest/gtest.h>

#include <sys/syscall.h>

using namespace brellin;
using namespace brellin::test;

TEST(VerifiedCopyTest, takesNothingForTheSameThatCouldNotBeRead)
{
    const TempTree tree;
    tree.lines({"original/tief/a=eins", "kopie/tief/b=anders"});
    // Any of the folders may be unreadable, also the two that differ.
    bool differs = true;
    int calls = 0;
    for (int n = 0; n <= calls; ++n) {
        for (int m = n; m <= calls; ++m) {
            SCOPED_TRACE(testing::Message() << "calls " << n << " and " << m);
            const auto closed = [&](int number) {
                calls = std::max(calls, number);
                return number == n || number == m ? EACCES : 0;
            };
            const auto act = [&] { differs = !verifyCopy(tree.path("original"), tree.path("kopie"), nullptr); };
            if (!runWithFailingCalls(SYS_openat, closed, act))
                GTEST_SKIP() << "no failing calls here";
            EXPECT_TRUE(differs);
        }
    }
    EXPECT_GE(calls, 3);
}
