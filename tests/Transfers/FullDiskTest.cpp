#include "Disk/EntryPlace.h"
#include "Support/FailingDisk.h"
#include "Support/PrivateMount.h"
#include "TransferWorld.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

using namespace brellin;
using namespace brellin::test;

namespace {

constexpr std::int64_t page = 4096;

/// A disk with room for a number of pages, and a file and a folder that replace others on it.
class FullDisk : public TransferWorld {
public:
    explicit FullDisk(std::int64_t freePages) : small(disk(""), "tmpfs", "size=512k")
    {
        if (!small)
            return;
        tree().lines({"home/von/Ordner/leer/", "home/von/Ordner/verweis->innen.bin"});
        fill("home/von/film.bin", 'f', 6);
        fill("home/von/Ordner/innen.bin", 'i', 4);
        fill("home/von/Ordner/tief/unten.bin", 'u', 3);
        fill("disk/Ziel/film.bin", 'a', 1);
        fill("disk/Ziel/Ordner/alt.bin", 'b', 1);
        all = contents();
        small.leaveFree(freePages * page, "voll");
    }

    TransferOutcome run(TransferKind kind, bool replace)
    {
        std::vector<TransferStep> steps;
        for (const char *const name : {"film.bin", "Ordner"})
            steps.push_back({home("von") / name, disk(replace ? "Ziel" : "") / name, replace, {}});
        TransferState state;
        return TransferEngine(services()).run(steps, kind, state);
    }
    /// How often this content exists; exactly once means that nothing is lost, incomplete or left over.
    std::size_t copiesOf(char letter, std::size_t pages) const
    {
        std::size_t found = 0;
        for (const auto &entry : std::filesystem::recursive_directory_iterator(tree().root()))
            if (entry.is_regular_file() && !entry.is_symlink() && entry.file_size() == pages * page)
                found += tree().content(entry.path().lexically_relative(tree().root()).native()).front() == letter;
        return found;
    }

    PrivateMount small;
    std::set<std::string> all;

private:
    void fill(std::string_view name, char letter, std::int64_t pages) const
    {
        tree().file(name, std::string(static_cast<std::size_t>(pages * page), letter));
    }
};

struct Way {
    TransferKind kind;
    bool replace;
};

class FullDiskTest : public testing::TestWithParam<Way> {};

INSTANTIATE_TEST_SUITE_P(Ways, FullDiskTest,
                         testing::Values(Way{TransferKind::Copy, false}, Way{TransferKind::Copy, true},
                                         Way{TransferKind::Move, false}, Way{TransferKind::Move, true}));

} // namespace

TEST_P(FullDiskTest, losesNothingHoweverLittleRoomThereIs)
{
    const auto [kind, replace] = GetParam();
    std::size_t partly = 0;
    for (std::int64_t pages = 0;; ++pages) {
        SCOPED_TRACE(testing::Message() << pages << " free pages");
        FullDisk world(pages);
        if (!world.small)
            GTEST_SKIP() << "cannot mount a small volume here";
        const TransferOutcome outcome = world.run(kind, replace);
        const std::set<std::string> now = world.contents();
        for (const std::string &content : world.all)
            EXPECT_TRUE(now.contains(content)) << content.front() << " is lost";
        EXPECT_TRUE(world.leftovers().empty());
        // What was transferred is complete, and moves removed exactly that.
        EXPECT_EQ(outcome.done.size() + static_cast<std::size_t>(outcome.errors.size()), 2u);
        for (const char *const name : {"film.bin", "Ordner"}) {
            const Location dst = world.disk(replace ? "Ziel" : "") / name;
            const bool done = std::ranges::any_of(outcome.done, [&](const auto &one) { return one.dst == dst; });
            EXPECT_EQ(entryExists(world.home("von") / name), !done || kind == TransferKind::Copy) << name;
            EXPECT_EQ(entryExists(dst), done || replace) << name;
        }
        const std::size_t each = kind == TransferKind::Copy ? 2 : 1;
        const bool film =
            entryExists(world.disk(replace ? "Ziel" : "") / "film.bin") &&
            std::ranges::any_of(outcome.done, [](const auto &one) { return one.dst.filename() == "film.bin"; });
        EXPECT_EQ(world.copiesOf('f', 6), film ? each : 1);
        EXPECT_EQ(world.copiesOf('a', 1), 1u);
        for (const QString &line : linesOf(outcome.errors))
            EXPECT_TRUE(line.contains(Failure::system(ENOSPC).message)) << line.toStdString();
        partly += outcome.done.size() == 1 ? 1 : 0;
        if (outcome.done.size() == 2)
            break;
        ASSERT_LT(pages, 40);
    }
    EXPECT_GT(partly, 0u);
}

/// Writes more than the medium holds, so that the kernel writes back part of it before the flush.
TEST(FailingDiskTest, isNotedWhenTheSystemBringsTheBytesToIt)
{
    for (const TransferKind kind : {TransferKind::Copy, TransferKind::Move}) {
        constexpr std::int64_t size = 16 << 20;
        TransferWorld world;
        const FailingDisk disk(world.tree().folder("medium"), world.disk(""), size);
        if (!disk)
            GTEST_SKIP() << "cannot make such a disk here";
        for (int i = 0; i < 40; ++i)
            world.tree().file("home/Ordner/" + std::to_string(i),
                              std::string(size / 40, static_cast<char>('a' + i % 26)));
        // Another process's flush consumes the errors: a descriptor opened later would not see them.
        world.files.afterCopy = [&](const Location &, const Location &) {
            const Descriptor folder = *openFolder({AT_FDCWD, world.disk("").c_str()});
            ::syncfs(folder.number());
        };
        TransferState state;
        const std::vector<TransferStep> steps{{world.home("Ordner"), world.disk("Ordner"), false, {}}};
        const TransferOutcome outcome = TransferEngine(world.services()).run(steps, kind, state);
        ASSERT_EQ(outcome.errors.size(), 1);
        EXPECT_FALSE(outcome.done.front().moved);
        for (int i = 0; i < 40; ++i)
            EXPECT_EQ(world.tree().content("home/Ordner/" + std::to_string(i)).size(), size / 40u);
    }
}
