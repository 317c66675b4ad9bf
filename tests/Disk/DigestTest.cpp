#include "Disk/Digest.h"

#include "Support/FailingCalls.h"
#include "Support/TempTree.h"

#include <QCryptographicHash>

#include <gtest/gtest.h>

#include <thread>

#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/time.h>

namespace brellin {
namespace {

using test::TempTree;

constexpr std::size_t piece = 1'048'576;

TEST(DigestTest, isTheSha256OfTheContent)
{
    TempTree tree;
    EXPECT_EQ(sha256(tree.file("empty")).value(), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(sha256(tree.file("abc", "abc")).value(),
              "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(sha256OfBytes("abc"), sha256(tree.path("abc")).value());
    for (const std::size_t size : {piece - 1, piece, piece + 1, 2 * piece, 3 * piece + 17}) {
        std::string content(size, '\0');
        for (std::size_t at = 0; at < size; ++at)
            content[at] = static_cast<char>(at * 31 + at / 251);
        const QByteArray expected =
            QCryptographicHash::hash(QByteArray::fromStdString(content), QCryptographicHash::Sha256).toHex();
        JobControl control;
        EXPECT_EQ(sha256(tree.file("big", content), &control, DigestProgress::CountBytes).value(), expected) << size;
        EXPECT_EQ(control.done(), static_cast<qint64>(size));
    }
}

/// Closes its file while the thread that reads ahead is still at work, and fails where that one fails.
TEST(DigestTest, endsEarlyWhenCancelledAndNeverTakesAReadErrorForTheEnd)
{
    TempTree tree;
    const Location file = tree.file("big", std::string(8 * piece, 'x'));
    ASSERT_TRUE(sha256(file)); // the library reads its own configuration the first time
    for (int n = 0; n < 3; ++n) {
        Result<QByteArray> digest;
        const auto act = [&] { digest = sha256(file); };
        if (!test::runWithFailingCalls(SYS_pread64, [&](int number) { return number == n * 10 ? EIO : 0; }, act))
            GTEST_SKIP() << "the system cannot make calls fail here";
        EXPECT_TRUE(!digest && digest.error().is(std::errc::io_error)) << n;
    }
    JobControl control;
    std::jthread canceller([&] {
        while (control.done() == 0)
            std::this_thread::yield();
        control.cancel();
    });
    const auto cancelled = sha256(file, &control, DigestProgress::CountBytes);
    EXPECT_TRUE(cancelled || cancelled.error().isCancelled());
    EXPECT_GT(control.done(), 0);
}

TEST(DigestTest, isRefusedForAnythingButAFile)
{
    TempTree tree;
    tree.lines({"file=x", "folder/", "link->file"});
    ASSERT_EQ(::mkfifo(tree.path("pipe").c_str(), 0600), 0);
    for (const char *name : {"folder", "link", "pipe"}) {
        const auto digest = sha256(tree.path(name));
        EXPECT_TRUE(!digest && digest.error().is(std::errc::invalid_argument)) << name;
    }
    EXPECT_TRUE(sha256(tree.path("missing")).error().is(std::errc::no_such_file_or_directory));
}

TEST(DigestTest, canBeCancelledAndLeavesTheAccessTimeAlone)
{
    TempTree tree;
    const Location file = tree.file("file", "content");
    JobControl control;
    control.cancel();
    EXPECT_TRUE(sha256(file, &control).error().isCancelled());

    const timeval times[2] = {{1'000'000'000, 0}, {1'600'000'000, 0}};
    ASSERT_EQ(::utimes(file.c_str(), times), 0);
    ASSERT_TRUE(sha256(file));
    struct stat status;
    ASSERT_EQ(::stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_atim.tv_sec, times[0].tv_sec);
}

} // namespace
} // namespace brellin
