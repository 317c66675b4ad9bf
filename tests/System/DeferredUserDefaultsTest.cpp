#include "System/DeferredUserDefaults.h"

#include "Support/TempTree.h"
#include "Support/WaitUntil.h"
#include "System/FileLock.h"
#include "System/FileUserDefaults.h"
#include "System/MemoryUserDefaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>

using namespace brellin;
using brellin::test::TempTree;
using brellin::test::waitUntil;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

constexpr std::chrono::seconds longEnough{30};

/// Settings that note what is written, once they are let through, and refuse values of the key "voll".
class SlowDefaults : public MemoryUserDefaults {
public:
    Result<void> setValue(const QString &key, const QVariant &value) override
    {
        m_begun = true;
        m_opened.wait();
        if (key == u"voll"_qs)
            return failure(Failure::system(ENOSPC));
        {
            const std::scoped_lock lock(m_mutex);
            m_written.push_back((key + u'=' + value.toString()).toStdString());
        }
        return MemoryUserDefaults::setValue(key, value);
    }
    bool begun() const { return m_begun; }
    void open() { m_gate.set_value(); }
    std::vector<std::string> written() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_written;
    }

private:
    std::promise<void> m_gate;
    const std::shared_future<void> m_opened = m_gate.get_future().share();
    std::atomic<bool> m_begun = false;
    mutable std::mutex m_mutex;
    std::vector<std::string> m_written;
};

} // namespace

TEST(DeferredUserDefaultsTest, doesNotWaitForAnotherProgramThatHoldsTheLock)
{
    const TempTree tree;
    FileUserDefaults stored(tree.path("s"));
    ASSERT_TRUE(stored.setValue(u"breite"_qs, 1));
    DeferredUserDefaults settings(stored);
    Result<FileLock> other = FileLock::tryNow(tree.path("s/settings.lock"));
    ASSERT_TRUE(other);
    EXPECT_TRUE(settings.setValue(u"breite"_qs, 2));
    EXPECT_EQ(settings.value(u"breite"_qs), 2);
    EXPECT_EQ(stored.value(u"breite"_qs), 1) << "it is not stored yet";
    other->release();
    EXPECT_TRUE(settings.finish(longEnough));
    EXPECT_EQ(FileUserDefaults(tree.path("s")).value(u"breite"_qs)->toInt(), 2);
}

TEST(DeferredUserDefaultsTest, writesInTheOrderOfSettingAndReadsTheNewest)
{
    SlowDefaults stored;
    DeferredUserDefaults settings(stored);
    for (const auto &[key, value] : {std::pair("a", 1), {"b", 1}, {"a", 2}, {"a", 3}, {"b", 2}})
        EXPECT_TRUE(settings.setValue(QString::fromLatin1(key), value));
    EXPECT_EQ(settings.value(u"a"_qs), 3);
    EXPECT_EQ(settings.value(u"b"_qs), 2);
    // Another thread hears what became of its own value, which is behind these.
    std::future<Result<void>> own = std::async(std::launch::async, [&] { return settings.setValue(u"voll"_qs, 1); });
    EXPECT_TRUE(waitUntil([&] { return settings.value(u"voll"_qs).has_value(); }));
    stored.open();
    EXPECT_TRUE(own.get().error().is(std::errc::no_space_on_device));
    EXPECT_THAT(stored.written(), ElementsAre("a=1", "b=1", "a=3", "b=2")) << "2 was replaced before it was begun";
}

TEST(DeferredUserDefaultsTest, reportsWhatCannotBeStoredAndStoresTheRest)
{
    SlowDefaults stored;
    DeferredUserDefaults settings(stored);
    std::vector<Failure> heard;
    settings.onFailure([&](const Failure &why) { heard.push_back(why); });
    EXPECT_TRUE(settings.setValue(u"voll"_qs, 1));
    EXPECT_TRUE(settings.setValue(u"a"_qs, 1));
    EXPECT_EQ(settings.value(u"voll"_qs), 1);
    EXPECT_THAT(heard, IsEmpty());
    stored.open();
    ASSERT_TRUE(waitUntil([&] { return !heard.empty(); }));
    EXPECT_TRUE(heard[0].is(std::errc::no_space_on_device));
    EXPECT_FALSE(settings.value(u"voll"_qs)) << "the stored value applies again";
    EXPECT_TRUE(settings.finish(longEnough)) << "it has been reported";
    EXPECT_THAT(stored.written(), ElementsAre("a=1"));
    // At the end of the program nobody hears the callback any more.
    EXPECT_TRUE(settings.setValue(u"voll"_qs, 2));
    EXPECT_FALSE(settings.finish(longEnough));
    EXPECT_EQ(heard.size(), 1U);
}

TEST(DeferredUserDefaultsTest, itsEndWaitsForWhatIsStillToBeWritten)
{
    SlowDefaults stored;
    std::future<void> opening;
    {
        DeferredUserDefaults settings(stored);
        EXPECT_TRUE(settings.setValue(u"a"_qs, 1));
        EXPECT_TRUE(settings.setValue(u"b"_qs, 2));
        ASSERT_TRUE(waitUntil([&] { return stored.begun(); }));
        EXPECT_FALSE(settings.finish(std::chrono::milliseconds(1))) << "it is still being written";
        opening = std::async(std::launch::async, [&] {
            QThread::msleep(50);
            stored.open();
        });
    }
    EXPECT_THAT(stored.written(), ElementsAre("a=1", "b=2"));
}

TEST(DeferredUserDefaultsTest, replacesASettingsFileOnlyAfterWhatWasSetBefore)
{
    const TempTree tree;
    FileUserDefaults stored(tree.path("s"));
    DeferredUserDefaults settings(stored);
    EXPECT_TRUE(settings.setValue(u"breite"_qs, 2));
    EXPECT_TRUE(settings.replace(u"settings"_qs, QByteArray("{}")));
    EXPECT_TRUE(settings.finish(longEnough));
    EXPECT_FALSE(settings.value(u"breite"_qs));
}
