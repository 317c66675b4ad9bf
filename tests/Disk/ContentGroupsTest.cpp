#include "Disk/ContentGroups.h"

#include "Disk/OpenContent.h"
#include "Support/TempTree.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace brellin;
using namespace brellin::test;

namespace {

class ContentGroupsTest : public testing::Test {
protected:
    std::size_t add(const std::string &content)
    {
        const Location file = tree.file(std::to_string(files.size()) + ".jpg", content);
        files.push_back({file.native(), FileState::of(readAttributes(file).value())});
        return files.size() - 1;
    }
    std::vector<ContentGroup> groups() const { return groupByContent(files); }

    TempTree tree;
    std::vector<SeenFile> files;
};

/// Covers all code paths: few small files, few large ones, files of several pieces, and many of one size.
std::string contentOf(std::size_t size, char first, char middle, char last)
{
    std::string content(size, 'x');
    content[0] = first;
    content[size / 2] = middle;
    content[size - 1] = last;
    return content;
}

} // namespace

TEST_F(ContentGroupsTest, findsTheSameBytesWhateverTheSizeAndNumber)
{
    for (const std::size_t size : {std::size_t(3), std::size_t(9'000), std::size_t(100'000), std::size_t(2'500'000)}) {
        for (const int copies : {1, 2, 5}) {
            SCOPED_TRACE(testing::Message() << size << " bytes, " << copies << " copies of each");
            files.clear();
            std::vector<ContentGroup> expected(4);
            const std::vector contents{contentOf(size, 'a', 'a', 'a'), contentOf(size, 'b', 'a', 'a'),
                                       contentOf(size, 'a', 'b', 'a'), contentOf(size, 'a', 'a', 'b')};
            for (int copy = 0; copy < copies; ++copy) {
                for (std::size_t i = 0; i < contents.size(); ++i)
                    expected[i].files.push_back(add(contents[i]));
            }
            EXPECT_EQ(groups(), copies > 1 ? expected : std::vector<ContentGroup>());
        }
    }
}

TEST_F(ContentGroupsTest, comparesTwoOfOneSizeToTheLastByte)
{
    for (const std::size_t size : {std::size_t(3), std::size_t(100'000), std::size_t(2'500'000)}) {
        files.clear();
        add(contentOf(size, 'a', 'a', 'a'));
        add(contentOf(size, 'a', 'b', 'a'));
        EXPECT_EQ(groups(), std::vector<ContentGroup>()) << size;
        add(contentOf(size, 'a', 'b', 'a'));
        ASSERT_EQ(groups().size(), 1u) << size;
        EXPECT_EQ(groups()[0].files, (std::vector<std::size_t>{1, 2})) << size;
    }
}

TEST_F(ContentGroupsTest, leavesOutWhatIsGoneOrNoLongerAsItWasSeen)
{
    for (int i = 0; i < 3; ++i) {
        add("gleich");
        add("anders" + std::string(70'000, 'x'));
    }
    std::filesystem::remove(files[0].path);
    tree.age("1.jpg", Instant(std::chrono::seconds(1'000'000'000)));
    EXPECT_EQ(groups().size(), 2u);
    EXPECT_EQ(groups()[0].files, (std::vector<std::size_t>{2, 4}));
    EXPECT_EQ(groups()[1].files, (std::vector<std::size_t>{3, 5}));
    // Does not block on a pipe.
    std::filesystem::remove(files[2].path);
    ASSERT_EQ(::mkfifo(files[2].path.c_str(), 0600), 0);
    EXPECT_EQ(groups().size(), 1u);
}

TEST(OpenContentTest, hasNoDigestAndNoEqualWhereTheFileEndsEarly)
{
    const TempTree tree;
    const Location file = tree.file("a", std::string(300'000, 'x'));
    const auto open = OpenContent::open(file.native(), FileState::of(readAttributes(file).value()));
    ASSERT_TRUE(open);
    EXPECT_TRUE(open->digest(nullptr));
    EXPECT_TRUE(OpenContent::areEqual({&*open, &*open}, nullptr));
    std::filesystem::resize_file(file, 200'000);
    EXPECT_FALSE(open->digest(nullptr));
    EXPECT_FALSE(open->endsHash());
    EXPECT_FALSE(OpenContent::areEqual({&*open, &*open}, nullptr));
}
