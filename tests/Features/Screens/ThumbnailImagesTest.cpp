#include "Features/Screens/ThumbnailImages.h"

#include "Disk/SystemTrash.h"
#include "Features/Screens/PlacedThumbnails.h"
#include "Features/Thumbnails.h"
#include "Support/TempTree.h"
#include "Support/WaitUntil.h"
#include "System/MemoryUserDefaults.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

#include <mutex>

using namespace brellin;
using namespace brellin::test;

namespace {

const Instant moment = std::chrono::sys_days(std::chrono::year(2026) / 9 / 3);

/// Returns a square of the requested size for every file, in a colour chosen by the test.
class PaintingDecoder : public Decoder {
public:
    Result<QByteArray> ask(const DecoderRequest &request, const JobControl *) override
    {
        const std::scoped_lock lock(m_mutex);
        m_asked.push_back(Location(request.arguments.front()).filename());
        if (broken)
            return failure(undecodable());
        const int side = std::stoi(request.arguments.back());
        QByteArray pixels;
        for (int i = 0; i < side * side; ++i)
            pixels += colour;
        return bytesOf(DecodedPicture{side, side, true, pixels});
    }
    std::vector<Location> asked()
    {
        const std::scoped_lock lock(m_mutex);
        return m_asked;
    }
    QByteArray colour = QByteArray("\xFF\0\0\xFF", 4);
    bool broken = false;

private:
    std::mutex m_mutex;
    std::vector<Location> m_asked;
};

class ThumbnailImagesTest : public testing::Test {
protected:
    Location file(std::string_view name, Instant modified = moment) const
    {
        const Location location = tree.file(name, "pixels");
        tree.age(name, modified);
        return location;
    }
    /// Waits for the thumbnail.
    QPixmap arrived(const Location &entry, Instant modified, int side)
    {
        QSignalSpy ready(&images, &ThumbnailImages::ready);
        images.pixmap(entry, modified, side);
        EXPECT_TRUE(waitUntil([&] { return !ready.isEmpty(); }));
        return images.pixmap(entry, modified, side);
    }
    static QColor colourOf(const QPixmap &pixmap) { return pixmap.toImage().pixelColor(1, 1); }

    const TempTree tree;
    MemoryUserDefaults defaults;
    SystemVolumes volumes;
    PaintingDecoder decoder;
    Thumbnails thumbnails{defaults, volumes, decoder, tree.path("cache")};
    ThumbnailImages images{thumbnails};
};

} // namespace

TEST_F(ThumbnailImagesTest, comeInTheSizeAskedForAndStay)
{
    const Location entry = file("a.png");
    EXPECT_TRUE(images.pixmap(entry, moment, 72).isNull());
    EXPECT_EQ(arrived(entry, moment, 72).size(), QSize(72, 72));
    EXPECT_EQ(images.pixmap(entry, moment, 100).size(), QSize(100, 100)) << "the same picture serves";
    EXPECT_EQ(images.pixmap(entry, moment, 300).size(), QSize(128, 128)) << "until there is a larger one";
    EXPECT_EQ(arrived(entry, moment, 300).size(), QSize(300, 300));
    EXPECT_EQ(decoder.asked().size(), 2u);
}

TEST_F(ThumbnailImagesTest, ofPlacesAloneLeaveTheDiskToAWorker)
{
    struct NotingVolumes : SystemVolumes {
        bool isLocal(const Location &location) const override
        {
            ++(QThread::currentThread() == qApp->thread() ? onMainThread : onWorker);
            return SystemVolumes::isLocal(location);
        }
        mutable std::atomic<int> onMainThread = 0;
        mutable std::atomic<int> onWorker = 0;
    };
    const NotingVolumes noting;
    PlacedThumbnails placed(images, noting);
    const Location entry = file("a.png");
    EXPECT_TRUE(placed.pixmap(entry, 72).isNull());
    ASSERT_TRUE(waitUntil([&] { return !placed.pixmap(entry, 72).isNull(); }));
    decoder.colour = QByteArray("\0\0\xFF\xFF", 4);
    file("a.png", moment + std::chrono::hours(1));
    EXPECT_TRUE(waitUntil([&] { return colourOf(placed.pixmap(entry, 72)) == QColor(Qt::blue); }));
    EXPECT_EQ(noting.onMainThread, 0);
    EXPECT_LE(noting.onWorker, 20) << "once in a while, and not for each painting";
}

TEST_F(ThumbnailImagesTest, areThoseOfOurOwnCache)
{
    const Location entry = file("a.png");
    arrived(entry, moment, 72);
    ThumbnailImages others(thumbnails);
    QSignalSpy ready(&others, &ThumbnailImages::ready);
    others.pixmap(entry, moment, 72);
    ASSERT_TRUE(waitUntil([&] { return !ready.isEmpty(); }));
    EXPECT_EQ(colourOf(others.pixmap(entry, moment, 72)), QColor(Qt::red));
    EXPECT_EQ(decoder.asked().size(), 1u);
}

TEST_F(ThumbnailImagesTest, stayUntilTheChangedFilesPictureHasCome)
{
    const Location entry = file("a.png");
    arrived(entry, moment, 72);
    decoder.colour = QByteArray("\0\xFF\0\xFF", 4);
    const Instant later = moment + std::chrono::seconds(5);
    file("a.png", later);
    EXPECT_EQ(colourOf(images.pixmap(entry, later, 72)), QColor(Qt::red));
    EXPECT_EQ(colourOf(arrived(entry, later, 72)), QColor(Qt::green));
    // A file that is not a picture any more has no thumbnail.
    decoder.broken = true;
    const Instant last = later + std::chrono::seconds(5);
    file("a.png", last);
    EXPECT_TRUE(arrived(entry, last, 72).isNull());
}

TEST_F(ThumbnailImagesTest, areMadeForWhatIsSeen)
{
    auto view = std::make_unique<QObject>();
    std::vector<Location> entries;
    for (const char *name : {"1.png", "2.png", "3.png", "4.png"})
        entries.push_back(file(name));
    QSignalSpy ready(&images, &ThumbnailImages::ready);
    for (const Location &entry : entries)
        images.pixmap(entry, moment, 72);
    images.setVisible(view.get(), {entries[3], entries[2]});
    ASSERT_TRUE(waitUntil([&] { return ready.size() == 2; }));
    EXPECT_TRUE(images.pixmap(entries[0], moment, 72).isNull());
    view.reset();
    QCoreApplication::processEvents();
    for (const Location &asked : decoder.asked())
        EXPECT_TRUE(asked == "3.png" || asked == "4.png") << asked;
}
