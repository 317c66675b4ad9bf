#include "Transfers/Inspection.h"

#include "Support/PrivateMount.h"
#include "TransferWorld.h"
#include "Transfers/TargetLimits.h"
#include "Transfers/TransferTexts.h"

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// A machine whose disk is a memory stick with little space.
class StickVolumes : public SystemVolumes {
public:
    explicit StickVolumes(Location stick) : m_stick(std::move(stick)) {}

    bool same(const Location &a, const Location &b) const override
    {
        return isAtOrBelow(a, m_stick) == isAtOrBelow(b, m_stick);
    }
    QString fileSystem(const Location &location) const override
    {
        return isAtOrBelow(location, m_stick) ? type : QStringLiteral("ext4");
    }
    Result<std::int64_t> available(const Location &) const override { return free; }

    std::int64_t free = 1'000'000;
    QString type = QStringLiteral("vfat");

private:
    Location m_stick;
};

class InspectionTest : public testing::Test {
protected:
    Result<Inspection> inspect(std::initializer_list<const char *> names, const Location &folder,
                               TransferKind kind = TransferKind::Copy)
    {
        steps.clear();
        for (const char *name : names)
            steps.push_back({world.home(name), folder / Location(name).filename(), false, {}});
        const TransferServices base = world.services();
        const TransferServices services{base.files, base.trash, volumes, base.workers, base.logs, {}};
        return inspectSteps(steps, kind, services, control);
    }

    TransferWorld world;
    StickVolumes volumes{world.tree().path("disk")};
    JobControl control;
    std::vector<TransferStep> steps;
};

} // namespace

TEST_F(InspectionTest, findsWhatAStickCannotHold)
{
    world.tree().lines({"home/gut/ok.txt=1", "home/Fotos/19:30 Uhr.jpg=2", "home/Fotos/ende.=3", "home/GUT=4",
                        "home/tief/Ü=5", "home/tief/ü=6"});
    std::filesystem::create_directories(world.home("groß"));
    std::ofstream(world.home("groß/film.mov"));
    std::filesystem::resize_file(world.home("groß/film.mov"), 5'000'000'000);
    volumes.free = 10'000'000'000;
    const Result<Inspection> found = inspect({"gut", "Fotos", "GUT", "tief", "groß"}, world.tree().path("disk"));
    ASSERT_TRUE(found);
    EXPECT_EQ(found->obstacles.size(), 5);
    EXPECT_EQ(found->hindered, (std::set<std::size_t>{1, 2, 3, 4}));
    EXPECT_TRUE(found->obstacles.join(u'\n').contains(QStringLiteral("Fotos/19:30 Uhr.jpg: ")));
    EXPECT_EQ(found->question()->count, 5u);
    TransferQuestion question;
    question.about = *found->question();
    EXPECT_EQ(textOf(question).hint.toStdString(), "„Diese auslassen“ überträgt nicht: „Fotos“, „GUT“, „tief“ und 1 "
                                                   "weitere. Ein Ordner bleibt mit allem darin zurück.");
    const Inspection rest = found->withoutHindered(steps);
    ASSERT_EQ(steps.size(), 1u);
    EXPECT_EQ(steps[0].src, world.home("gut"));
    EXPECT_EQ(rest.total(), (TransferSize{1, 1}));
    EXPECT_FALSE(rest.question());
    // No obstacles on an ordinary volume.
    EXPECT_FALSE(inspect({"gut", "Fotos", "GUT", "tief", "groß"}, world.tree().path("home"))->question());
}

TEST_F(InspectionTest, tellsFormsOfALetterApartWhereTheVolumeDoes)
{
    world.tree().lines({"home/formen/ü=1", "home/formen/u\u0308=2", "home/formen/Maße=3", "home/formen/Masse=4"});
    for (const auto &[type, collisions] : {std::pair{"vfat", 0}, std::pair{"fuse.exfat", 0}, std::pair{"apfs", 2}}) {
        volumes.type = QString::fromLatin1(type);
        const Result<Inspection> found = inspect({"formen"}, world.tree().path("disk"));
        ASSERT_TRUE(found);
        EXPECT_EQ(found->obstacles.size(), collisions) << type;
    }
}

TEST_F(InspectionTest, findsFoldersDeepInASourceThatGiveNothingUp)
{
    world.tree().lines({"home/Fotos/tief/fest/", "home/Fotos/leer/", "home/b=1"});
    const PrivateMount full(world.home("Fotos/tief/fest"), "tmpfs", "size=1m");
    const PrivateMount empty(world.home("Fotos/leer"), "tmpfs", "size=1m");
    if (!full || !empty)
        GTEST_SKIP() << "only root mounts";
    world.tree().lines({"home/Fotos/tief/fest/x=1"});
    ASSERT_TRUE(full.makeReadOnly() && empty.makeReadOnly());
    const Location disk = world.tree().path("disk");
    const Result<Inspection> found = inspect({"Fotos", "b"}, disk, TransferKind::Move);
    ASSERT_EQ(found->obstacles.size(), 1);
    EXPECT_TRUE(found->obstacles[0].startsWith(QStringLiteral(
        "Fotos/tief/fest: Das Original lässt sich nicht entfernen, denn in „fest“ kann nichts geändert werden")));
    EXPECT_EQ(found->hindered, std::set<std::size_t>{0});
    TransferQuestion question;
    question.about = *found->question();
    EXPECT_EQ(textOf(question).message, QStringLiteral("Nicht alles lässt sich vom alten Ort entfernen"));
    // Copying removes nothing from the source.
    EXPECT_FALSE(inspect({"Fotos", "b"}, disk, TransferKind::Copy)->question());
}

TEST_F(InspectionTest, missesRoomForWhatComesLastAndCountsLinksOnce)
{
    world.tree().lines({"home/a/1.bin=", "home/b.bin="});
    world.tree().file("home/a/1.bin", std::string(600'000, 'x'));
    world.tree().file("home/b.bin", std::string(600'000, 'x'));
    std::filesystem::create_hard_link(world.home("a/1.bin"), world.home("a/2.bin"));
    EXPECT_FALSE(inspect({"a"}, world.tree().path("disk"))->question());
    const Result<Inspection> found = inspect({"a", "b.bin"}, world.tree().path("disk"));
    ASSERT_EQ(found->obstacles.size(), 1);
    EXPECT_EQ(found->obstacles[0].toStdString(), "Es fehlt Platz: Gebraucht werden 1,2 MB, frei sind 1 MB.");
    EXPECT_EQ(found->hindered, std::set<std::size_t>{1});
    EXPECT_EQ(found->total(), (TransferSize{1'800'000, 3}));
    // A rename needs no space.
    volumes.free = 0;
    EXPECT_FALSE(inspect({"a", "b.bin"}, world.home("b"), TransferKind::Move)->question());
}

TEST(ProgressLineTest, tellsTheRestOnlyWhenItCanBeTrusted)
{
    using namespace std::chrono_literals;
    ProgressLine line{true, 0, 0, 0, 0, 0ms, false};
    EXPECT_EQ(line.text(), QStringLiteral("Ermittle Größe …"));
    line = {false, 1'100'000'000, 1'700'000'000, 212, 1340, 1999ms, false};
    EXPECT_EQ(line.text(), QStringLiteral("1,1 GB von 1,7 GB · 212 von 1.340 Dateien"));
    line.active = 16500ms;
    EXPECT_EQ(line.text(), QStringLiteral("1,1 GB von 1,7 GB · 212 von 1.340 Dateien · noch 9 Sek."));
    line.paused = true;
    EXPECT_FALSE(line.remaining());
    line = {false, 1'000, 1'700'000'000, 0, 1, 5s, false};
    EXPECT_FALSE(line.remaining()); // too early for an estimate
    EXPECT_EQ(remainingText(59s), QStringLiteral("59 Sek."));
    EXPECT_EQ(remainingText(60s), QStringLiteral("1 Min."));
    EXPECT_EQ(remainingText(100s), QStringLiteral("2 Min."));
}
