#include "Disk/FileAttributes.h"
#include "Features/Thumbnails.h"
#include "Support/FakeDecoder.h"
#include "Support/TempTree.h"
#include "Support/WaitUntil.h"
#include "System/AtomicWrite.h"
#include "System/MemoryUserDefaults.h"
#include "System/ReadWhole.h"

#include <QCryptographicHash>

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace brellin;
using namespace brellin::test;

namespace {

using Outcome = Thumbnail::Outcome;

const Instant moment = std::chrono::sys_days(std::chrono::year(2026) / 9 / 3);

class SomeVolumes : public SystemVolumes {
public:
    bool isLocal(const Location &location) const override { return !isAtOrBelow(location, network); }
    Location network = "/nowhere";
};

class ThumbnailsTest : public testing::Test {
protected:
    ThumbnailWish wishFor(std::string_view name, int side = 128) const
    {
        const Location file = tree.file(name, "pixels");
        tree.age(name, moment);
        return {file, moment, side};
    }
    Thumbnails::Heard noting()
    {
        return [this](const ThumbnailWish &wish, const Thumbnail &thumbnail) { heard.emplace_back(wish, thumbnail); };
    }
    /// Makes one thumbnail and waits for it.
    Thumbnail made(const ThumbnailWish &wish)
    {
        heard.clear();
        thumbnails.request(&owner, {wish}, noting());
        EXPECT_TRUE(waitUntil([&] { return !heard.empty(); }));
        return heard.empty() ? Thumbnail() : heard.front().second;
    }

    const TempTree tree;
    const ThumbnailCache cache{tree.path("cache")};
    MemoryUserDefaults defaults;
    SomeVolumes volumes;
    FakeDecoder decoder;
    std::vector<std::pair<ThumbnailWish, Thumbnail>> heard;
    QObject owner;
    Thumbnails thumbnails{defaults, volumes, decoder, tree.path("cache")};
};

} // namespace

TEST_F(ThumbnailsTest, areKeptWhereOtherProgramsLookForThem)
{
    const ThumbnailWish wish = wishFor("Gr\u00FC\u00DFe/u\u0308 \xFF#%,(1).jpg", 200);
    EXPECT_EQ(made(wish).picture, redPicture());
    const QByteArray uri =
        "file://" + QByteArray::fromStdString(tree.root().native()) + "/Gr%C3%BC%C3%9Fe/u%CC%88%20%FF%23%25,(1).jpg";
    const Location png = tree.path("cache/large") /
                         (QCryptographicHash::hash(uri, QCryptographicHash::Md5).toHex() + ".png").toStdString();
    const PngTexts texts = pngTexts(png);
    EXPECT_EQ(texts.value("Thumb::URI"), uri);
    EXPECT_EQ(texts.value("Thumb::MTime"), QByteArray::number(moment.time_since_epoch() / std::chrono::seconds(1)));
    struct stat status{};
    ASSERT_EQ(::stat(png.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    ASSERT_EQ(::stat(png.parent_path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(png.parent_path()), {}), 1) << "something is left over";

    EXPECT_EQ(made(wish).png, png);
    EXPECT_EQ(decoder.asked().size(), 1u);
}

TEST_F(ThumbnailsTest, areMadeAnewWhenTheFileIsAnother)
{
    ThumbnailWish wish = wishFor("a.png");
    made(wish);
    wish.modified += std::chrono::seconds(1);
    EXPECT_EQ(made(wish).outcome, Outcome::Changed) << "asked about a file that does not exist so";
    tree.age("a.png", wish.modified);
    EXPECT_TRUE(made(wish).picture);
    EXPECT_EQ(decoder.asked().size(), 2u);
}

TEST_F(ThumbnailsTest, areNotKeptOfAFileThatChangesMeanwhile)
{
    const ThumbnailWish wish = wishFor("a.png");
    decoder.before = [&] { tree.file("a.png", "other pixels, at the very same time"), tree.age("a.png", moment); };
    EXPECT_EQ(made(wish).outcome, Outcome::Changed);
    EXPECT_FALSE(cache.find(wish.entry, moment, 128));
}

TEST_F(ThumbnailsTest, decodeWhatOtherProgramsMade)
{
    const ThumbnailWish wish = wishFor("a.mp4");
    cache.store(wish.entry, moment, 128, redPicture());
    const Location png = cache.find(wish.entry, moment, 128)->png;
    QByteArray foreign = readWhole(png).value_or(QByteArray());
    foreign.replace("Software", "Otherone");
    ASSERT_TRUE(writeAtomically(png, foreign));
    EXPECT_EQ(made(wish).picture, redPicture());
    EXPECT_EQ(decoder.asked().at(0), (DecoderRequest{decoderWords::picture, {png.native(), "128"}}));
}

TEST_F(ThumbnailsTest, rememberWhatCannotBeDecoded)
{
    const ThumbnailWish wish = wishFor("broken.jpg");
    decoder.answer = failure(undecodable());
    EXPECT_EQ(made(wish).outcome, Outcome::None);
    EXPECT_EQ(made(wish).outcome, Outcome::None);
    EXPECT_EQ(decoder.asked().size(), 1u);
    // Temporary failures are not remembered.
    decoder.answer = failure(unreadable());
    const ThumbnailWish other = wishFor("locked.jpg");
    EXPECT_EQ(made(other).outcome, Outcome::NotNow);
    decoder.answer = bytesOf(redPicture());
    EXPECT_EQ(made(other).outcome, Outcome::Made);
}

TEST_F(ThumbnailsTest, areNotMadeOfEverything)
{
    tree.link("link.jpg", "a.jpg");
    EXPECT_EQ(made({tree.path("link.jpg"), readAttributes(tree.path("link.jpg"))->modified, 128}).outcome,
              Outcome::None);
    EXPECT_EQ(made(wishFor("text.txt")).outcome, Outcome::None);
    EXPECT_EQ(made(wishFor("cache/normal/x.png")).outcome, Outcome::None);
    EXPECT_EQ(made({tree.path("missing.png"), moment, 128}).outcome, Outcome::NotNow);
    volumes.network = tree.path("net");
    EXPECT_EQ(made(wishFor("net/a.png")).outcome, Outcome::NotNow);
    EXPECT_TRUE(decoder.asked().empty());
    ASSERT_TRUE(defaults.setValue(QStringLiteral("thumbnailsNetwork"), true));
    EXPECT_EQ(made(wishFor("net/a.png")).outcome, Outcome::Made);
}

TEST_F(ThumbnailsTest, giveUpWhatIsNoLongerWanted)
{
    decoder.hold(true);
    thumbnails.request(&owner, {wishFor("1.png"), wishFor("2.png"), wishFor("3.png")}, noting());
    EXPECT_TRUE(waitUntil([&] { return decoder.asked().size() == 2; }));
    // The new request keeps work in progress that is still wanted, and has its own order.
    thumbnails.request(&owner, {wishFor("4.png"), wishFor("2.png")}, noting());
    EXPECT_TRUE(waitUntil([&] { return decoder.asked().size() == 3; }));
    EXPECT_EQ(decoder.asked().back().arguments.front(), tree.path("4.png").native());
    decoder.hold(false);
    EXPECT_TRUE(waitUntil([&] { return heard.size() == 2; }));
    for (const auto &[wish, thumbnail] : heard)
        EXPECT_NE(wish.entry, tree.path("1.png"));
    EXPECT_EQ(decoder.asked().size(), 3u);
}

TEST_F(ThumbnailsTest, answerEveryOwnerButThoseThatAreGone)
{
    decoder.hold(true);
    auto gone = std::make_unique<QObject>();
    QObject second;
    int secondHeard = 0;
    const ThumbnailWish wish = wishFor("1.png");
    thumbnails.request(gone.get(), {wish}, [](const auto &, const auto &) { FAIL() << "told the dead"; });
    thumbnails.request(&owner, {wish}, noting());
    thumbnails.request(&second, {wish}, [&](const auto &, const auto &) { ++secondHeard; });
    EXPECT_TRUE(waitUntil([&] { return decoder.asked().size() == 1; }));
    gone.reset();
    decoder.hold(false);
    EXPECT_TRUE(waitUntil([&] { return heard.size() == 1 && secondHeard == 1; }));
    EXPECT_EQ(decoder.asked().size(), 1u);
}
