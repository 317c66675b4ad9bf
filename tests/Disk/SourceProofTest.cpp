#include "Disk/CopiedEntries.h"

#include "Disk/CopyTreeRemoval.h"
#include "Disk/EntryPlace.h"
#include "Disk/MetadataMark.h"
#include "Disk/RemovalWalk.h"
#include "Support/TempTree.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>

#include <fcntl.h>

using namespace brellin;
using test::TempTree;

namespace {

using Proof = CopiedEntries::Proof;

/// A file and a copy with different content but equal size and times: it was written within one clock tick.
class SourceProofTest : public testing::Test {
protected:
    SourceProofTest()
    {
        tree.lines({"original=eins", "kopie=zwei"});
        status = *statusOf({AT_FDCWD, original.c_str()});
        mark = MetadataMark::of(openForReading({AT_FDCWD, original.c_str()})->number(), status);
    }

    CopiedEntries copied(Proof proof, bool settled) const
    {
        CopiedEntries all;
        all.begin(OwnEntries::pathMark(0, "original"), proof);
        all.add(all.top(), {status, settled}, mark);
        all.sort();
        return all;
    }
    bool isKept(Proof proof, bool settled) const
    {
        const auto kept = removeCopied(original, copied(proof, settled), tree.path("kopie"));
        EXPECT_TRUE(kept);
        return kept == std::vector{original};
    }

    TempTree tree;
    const Location original = tree.path("original");
    struct stat status{};
    std::uint64_t mark = 0;
};

/// A removal with a change between examining "tief" and opening it.
class DisturbedRemoval : private RemovalWalk {
public:
    explicit DisturbedRemoval(std::function<void()> meanwhile) : m_meanwhile(std::move(meanwhile)) {}
    Result<void> run(NameIn top) { return RemovalWalk::run(top, 0); }

private:
    bool mayGo(NameIn entry, std::uint64_t, const struct stat &) override
    {
        if (std::string_view(entry.name) == "tief")
            m_meanwhile();
        return true;
    }
    void filled(std::string_view) override {}

    std::function<void()> m_meanwhile;
};

} // namespace

TEST_F(SourceProofTest, timesThatProveNothingAreNotBelieved)
{
    EXPECT_TRUE(isKept(Proof::InodeAndTime, false)) << "too young";
    EXPECT_TRUE(isKept(Proof::Inode, true)) << "a share";
    EXPECT_TRUE(isKept(Proof::None, true)) << "a volume without change times of its own";
    EXPECT_EQ(tree.content("original"), "eins");
    EXPECT_FALSE(isKept(Proof::InodeAndTime, true));
    EXPECT_FALSE(tree.has("original"));
}

TEST_F(SourceProofTest, aCancelEndsALongComparisonAndKeepsWhatItWouldHaveProven)
{
    JobControl control;
    control.cancel();
    const auto remove = [&](std::size_t size, Proof proof) {
        for (const char *file : {"original", "kopie"})
            tree.file(file, std::string(size, 'x'));
        status = *statusOf({AT_FDCWD, original.c_str()});
        return removeCopied(original, copied(proof, true), tree.path("kopie"), &control);
    };
    const auto compared = remove(20'000'000, Proof::None);
    ASSERT_FALSE(compared);
    EXPECT_TRUE(compared.error().isCancelled());
    EXPECT_TRUE(tree.has("original"));
    EXPECT_EQ(remove(20'000'000, Proof::InodeAndTime), std::vector<Location>()); // nothing to compare
    EXPECT_FALSE(tree.has("original"));
    EXPECT_EQ(remove(20, Proof::None), std::vector<Location>()); // compared within a moment
    EXPECT_FALSE(tree.has("original"));
}

TEST_F(SourceProofTest, findsOnlyWhatIsThereAsItWas)
{
    const std::array<std::function<void(struct stat &)>, 4> changes{
        [](struct stat &now) { now.st_mode = (now.st_mode & ~unsigned(S_IFMT)) | S_IFDIR; },
        [](struct stat &now) { ++now.st_size; },
        [](struct stat &now) { now.st_mtim.tv_nsec ^= 1; },
        [](struct stat &now) { ++now.st_dev; },
    };
    for (const Proof proof : {Proof::InodeAndTime, Proof::Inode, Proof::None}) {
        const CopiedEntries all = copied(proof, true);
        EXPECT_TRUE(all.find(all.top(), status));
        for (std::size_t i = 0; i < changes.size(); ++i) {
            struct stat now = status;
            changes[i](now);
            EXPECT_FALSE(all.find(all.top(), now)) << "change " << i;
        }
        struct stat other = status;
        ++other.st_ino;
        EXPECT_EQ(all.find(all.top(), other) != nullptr, proof == Proof::None) << "another of the same size and time";
    }
}

TEST(RemovalWalkTest, doesNotEnterAFolderThatTookThePlace)
{
    for (const bool link : {false, true}) {
        const TempTree tree;
        tree.lines({"kopie/tief/eigen=1", "fremd/wichtig=bleibt"});
        DisturbedRemoval removal([&] {
            std::filesystem::rename(tree.path("kopie/tief"), tree.path("woanders"));
            if (link)
                tree.link("kopie/tief", "../fremd");
            else
                std::filesystem::rename(tree.path("fremd"), tree.path("kopie/tief"));
        });
        const EntryPlace place = *openPlace(tree.path("kopie"));
        EXPECT_FALSE(removal.run(place.at()));
        EXPECT_EQ(tree.content("kopie/tief/wichtig"), "bleibt");
        EXPECT_EQ(tree.content("woanders/eigen"), "1");
    }
}
