#include "Disk/HiddenFolder.h"
#include "Disk/Volumes.h"
#include "FileOperations/Unpacking.h"
#include "FileOperations/ZipArchive.h"
#include "Support/Faults.h"
#include "Support/FuseMount.h"
#include "Support/PrivateMount.h"
#include "Support/TempTree.h"
#include "Support/WaitUntil.h"

#include <gtest/gtest.h>

#include <archive.h>
#include <archive_entry.h>

#include <algorithm>
#include <functional>
#include <thread>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// An entry of an archive made by a test.
struct Made {
    std::string path;
    std::string content = {};
    unsigned type = AE_IFREG;
    std::string target = {};
    unsigned mode = 0644;
};

void makeTar(const Location &file, const std::vector<Made> &entries, bool packed = true)
{
    archive *writer = ::archive_write_new();
    ::archive_write_set_format_pax_restricted(writer);
    if (packed)
        ::archive_write_add_filter_gzip(writer);
    ASSERT_EQ(::archive_write_open_filename(writer, file.c_str()), ARCHIVE_OK);
    for (const Made &made : entries) {
        archive_entry *entry = ::archive_entry_new();
        ::archive_entry_set_pathname(entry, made.path.c_str());
        ::archive_entry_set_perm(entry, made.mode);
        if (made.type == 0)
            ::archive_entry_set_hardlink(entry, made.target.c_str());
        ::archive_entry_set_filetype(entry, made.type == 0 ? AE_IFREG : made.type);
        if (made.type == AE_IFLNK)
            ::archive_entry_set_symlink(entry, made.target.c_str());
        ::archive_entry_set_size(entry, static_cast<la_int64_t>(made.content.size()));
        ::archive_entry_set_mtime(entry, 1'000'000'000, 0);
        ASSERT_LE(::archive_write_header(writer, entry), ARCHIVE_OK) << made.path;
        ::archive_write_data(writer, made.content.data(), made.content.size());
        ::archive_entry_free(entry);
    }
    ::archive_write_free(writer);
}

class ArchivesTest : public testing::Test {
protected:
    ArchivesTest() { tree.lines({"in/", "out/"}); }

    Result<Packed> zip(const std::vector<std::string> &names)
    {
        std::vector<Location> entries;
        for (const std::string &name : names)
            entries.push_back(tree.path("in") / name);
        return compress(entries, tree.path("in"), files, processes, control);
    }
    Result<Unpacked> unpackTar(const std::vector<Made> &entries)
    {
        makeTar(tree.path("Reise.tar.gz"), entries);
        return unpack(tree.path("Reise.tar.gz"), tree.path("out"), services, control);
    }
    std::vector<std::string> namesIn(std::string_view folder) const
    {
        std::vector<std::string> names;
        for (const auto &entry : std::filesystem::directory_iterator(tree.path(folder)))
            names.push_back(entry.path().filename());
        std::ranges::sort(names);
        return names;
    }
    using Names = std::vector<std::string>;

    TempTree tree;
    DiskFileActions files;
    SystemProcessRunner processes;
    SystemVolumes volumes;
    UnpackingServices services{files, volumes, BRELLIN_BILD};
    JobControl control;
};

} // namespace

TEST_F(ArchivesTest, packsAndUnpacksWhateverNamesAndLinks)
{
    tree.lines({"in/-r=eins", "in/-=zwei", "in/@=drei", "in/--=vier", "in/*.txt=fünf", "in/\xFF.x=sechs",
                "in/ordner/.versteckt=sieben", "in/ordner/leer/", "in/ordner/zeiger->.versteckt"});
    const Names all{"-r", "-", "@", "--", "*.txt", "\xFF.x", "ordner"};
    const Result<Packed> made = zip(all);
    ASSERT_TRUE(made) << made.error().message.toStdString();
    EXPECT_EQ(made->place.filename(), "Archiv.zip");
    EXPECT_GT(control.total(), 0);
    EXPECT_EQ(namesIn("in").size(), all.size() + 1); // no hidden folder is left

    const Result<Unpacked> unpacked = unpack(made->place, tree.path("out"), services, control);
    ASSERT_TRUE(unpacked) << unpacked.error().message.toStdString();
    EXPECT_EQ(unpacked->refused, QStringList());
    EXPECT_EQ(namesIn("out"), (Names{"Archiv"}));
    std::filesystem::remove(made->place);
    for (const std::string &name : all) {
        EXPECT_EQ(tree.has("out/Archiv/" + name), true) << name;
    }
    EXPECT_EQ(tree.content("out/Archiv/-"), "zwei");
    EXPECT_EQ(tree.content("out/Archiv/@"), "drei");
    EXPECT_EQ(tree.content("out/Archiv/\xFF.x"), "sechs");
    EXPECT_EQ(tree.content("out/Archiv/ordner/.versteckt"), "sieben");
    EXPECT_TRUE(tree.has("out/Archiv/ordner/leer"));
    EXPECT_EQ(std::filesystem::read_symlink(tree.path("out/Archiv/ordner/zeiger")), ".versteckt");
}

TEST_F(ArchivesTest, namesArchivesFreelyAndLeavesNothingOfAFailure)
{
    tree.lines({"in/Brief.pdf=eins", "in/Brief.pdf.zip=anderes", "fort/x=y"});
    EXPECT_EQ(zip({"Brief.pdf"})->place.filename(), "Brief.pdf (2).zip");
    EXPECT_EQ(tree.content("in/Brief.pdf.zip"), "anderes");
    const Names before = namesIn("in");
    EXPECT_FALSE(zip({"gibt es nicht"}));
    EXPECT_FALSE(
        compress({tree.path("in/Brief.pdf"), tree.path("fort/x")}, tree.path("in"), files, processes, control));
    EXPECT_FALSE(compress({tree.path("in")}, tree.path("in"), files, processes, control));
    control.cancel();
    EXPECT_TRUE(zip({"Brief.pdf"}).error().isCancelled());
    EXPECT_EQ(namesIn("in"), before);
}

TEST_F(ArchivesTest, packsNothingRatherThanAPart)
{
    if (::geteuid() == 0)
        GTEST_SKIP() << "root reads everything";
    tree.lines({"in/a=eins", "in/b=zwei"});
    ::chmod(tree.path("in/b").c_str(), 0);
    const Result<Packed> made = zip({"a", "b"});
    ASSERT_FALSE(made);
    EXPECT_TRUE(made.error().message.startsWith(u"Nicht alles ließ sich lesen"));
    EXPECT_EQ(namesIn("in"), (Names{"a", "b"}));
}

namespace {

/// Changes the folder while the packing program runs.
class DisturbedRunner : public ProcessRunner {
public:
    explicit DisturbedRunner(std::function<void()> meanwhile) : m_meanwhile(std::move(meanwhile)) {}
    Result<ProcessOutput> run(const ProcessRequest &request, const JobControl *control) override
    {
        const auto done = SystemProcessRunner().run(request, control);
        m_meanwhile();
        return done;
    }

private:
    std::function<void()> m_meanwhile;
};

} // namespace

TEST_F(ArchivesTest, namesWhatIsNotInTheArchiveOrHasChangedMeanwhile)
{
    tree.lines({"in/ordner/tief/a=eins", "in/ordner/b=zwei", "in/c=drei", "in/d=vier"});
    ASSERT_EQ(::mkfifo(tree.path("in/ordner/leitung").c_str(), 0600), 0);
    const std::vector<Location> entries{tree.path("in/ordner"), tree.path("in/c"), tree.path("in/d")};
    DisturbedRunner quiet([] {});
    const auto still = compress(entries, tree.path("in"), files, quiet, control);
    ASSERT_TRUE(still);
    EXPECT_EQ(still->notes, QStringList(QStringLiteral("leitung: Fehlt im Archiv, denn das ist keine Datei und kein "
                                                       "Ordner.")));
    DisturbedRunner disturbed([this] {
        std::filesystem::resize_file(tree.path("in/ordner/tief/a"), 1);
        std::filesystem::resize_file(tree.path("in/d"), 1);
    });
    const auto torn = compress(entries, tree.path("in"), files, disturbed, control);
    ASSERT_TRUE(torn);
    ASSERT_EQ(torn->notes.size(), 3);
    EXPECT_TRUE(torn->notes[1].startsWith(u"a: Wurde während des Packens geändert"));
    EXPECT_TRUE(torn->notes[2].startsWith(u"d: Wurde während des Packens geändert"));
}

TEST_F(ArchivesTest, removesWhatAKilledProgramLeft)
{
    tree.lines({"in/a=eins", "in/.brellin-zip-tot/sperre=", "in/.brellin-zip-tot/inhalt/ziXYZ=halb",
                "in/.brellin-zip-anders=Datei", "in/.brellin-zip-werdend/inhalt/"});
    ASSERT_TRUE(zip({"a"}));
    EXPECT_EQ(namesIn("in"), (Names{".brellin-zip-anders", ".brellin-zip-werdend", "a", "a.zip"}));
}

TEST_F(ArchivesTest, unpacksOneEntryByItselfAndSeveralInAFolder)
{
    tree.lines({"out/bilder=schon da", "out/Reise=schon da"});
    const Result<Unpacked> one = unpackTar({{"bilder/a.jpg", "eins", AE_IFREG, {}, 04755},
                                            {"bilder/a.jpg", "noch eins"},
                                            {"bilder/b", {}, 0, "bilder/a.jpg"},
                                            {"bilder/tief/", {}, AE_IFDIR, {}, 0}});
    ASSERT_TRUE(one) << one.error().message.toStdString();
    EXPECT_EQ(one->place, tree.path("out/bilder (2)"));
    EXPECT_EQ(tree.content("out/bilder (2)/a.jpg"), "eins");
    EXPECT_EQ(tree.content("out/bilder (2)/a (2).jpg"), "noch eins");
    EXPECT_EQ(tree.content("out/bilder (2)/b"), "eins");
    struct stat status{};
    ASSERT_EQ(::stat(tree.path("out/bilder (2)/a.jpg").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0755U); // setuid was dropped
    EXPECT_EQ(status.st_mtime, 1'000'000'000);
    EXPECT_TRUE(tree.has("out/bilder (2)/tief"));

    const Result<Unpacked> several = unpackTar({{"a", "eins"}, {"./b", "zwei"}});
    ASSERT_TRUE(several);
    EXPECT_EQ(several->place, tree.path("out/Reise (2)"));
    EXPECT_EQ(tree.content("out/Reise (2)/b"), "zwei");
    EXPECT_EQ(tree.content("out/bilder"), "schon da");
}

TEST_F(ArchivesTest, letsNothingOutOfItsFolder)
{
    tree.lines({"opfer=unberührt", "out/opfer=unberührt"});
    const std::string secret = tree.path("opfer").native();
    const Result<Unpacked> unpacked = unpackTar({
        {"../opfer", "böse"},
        {"gut/../../opfer", "böse"},
        {secret, "böse"},
        {"pipe", {}, AE_IFIFO},
        {"gerät", {}, AE_IFCHR},
        {"raus", {}, AE_IFLNK, ".."},
        {"raus/opfer", "böse"},
        {"absolut", {}, AE_IFLNK, secret},
        {"gut/hoch", {}, AE_IFLNK, "../.."},
        // Each link stays inside by its text, but one through the other leads outside.
        {"tief/a/oben", {}, AE_IFLNK, "../.."},
        {"tief/b", {}, AE_IFLNK, "a/oben/../opfer"},
        {"hart", {}, 0, "../opfer"},
        {"gut/datei", "gut"},
        {"gut/zeiger", {}, AE_IFLNK, "./datei"},
    });
    ASSERT_TRUE(unpacked) << unpacked.error().message.toStdString();
    EXPECT_EQ(tree.content("opfer"), "unberührt");
    EXPECT_EQ(tree.content("out/opfer"), "unberührt");
    EXPECT_EQ(namesIn("out"), (Names{"Reise", "opfer"}));
    EXPECT_EQ(namesIn("out/Reise"), (Names{"gut", "raus", "tief"}));
    // created because an entry's path goes through the refused link
    EXPECT_TRUE(std::filesystem::is_directory(tree.path("out/Reise/raus")));
    EXPECT_EQ(namesIn("out/Reise/gut"), (Names{"datei", "zeiger"}));
    EXPECT_EQ(tree.content("out/Reise/gut/zeiger"), "gut");
    EXPECT_FALSE(tree.has("out/Reise/tief/b"));
    EXPECT_GE(unpacked->refused.size(), 9);
    EXPECT_TRUE(unpacked->refused.contains(QStringLiteral("../opfer: führt aus dem Ordner hinaus oder ist zu lang")));
}

TEST_F(ArchivesTest, leavesNothingOfADamagedArchiveAnEmptyOneOrACancel)
{
    makeTar(tree.path("a.tgz"), {{"a", std::string(300'000, 'x')}, {"b", std::string(300'000, 'y')}});
    std::filesystem::resize_file(tree.path("a.tgz"), std::filesystem::file_size(tree.path("a.tgz")) / 2);
    EXPECT_FALSE(unpack(tree.path("a.tgz"), tree.path("out"), services, control));
    tree.file("kein.zip", "kein Archiv");
    EXPECT_FALSE(unpack(tree.path("kein.zip"), tree.path("out"), services, control));
    EXPECT_FALSE(unpackTar({}));
    EXPECT_FALSE(unpackTar({{"../x", "böse"}}));
    control.cancel();
    EXPECT_TRUE(unpackTar({{"a", "b"}}).error().isCancelled());
    EXPECT_EQ(namesIn("out"), Names());
}

TEST_F(ArchivesTest, leavesOutWhatIsSpoiltAndSaysThatAnArchiveIsCut)
{
    tree.lines({"in/gut=unversehrt", "in/schlecht=verfälscht", "in/auch gut=ebenso"});
    const Location archive = zip({"gut", "schlecht", "auch gut"})->place;
    std::string bytes = tree.content("in/Archiv.zip");
    bytes[bytes.find("verfälscht")] = 'V';
    tree.file("in/Archiv.zip", bytes);
    const Result<Unpacked> rest = unpack(archive, tree.path("out"), services, control);
    ASSERT_TRUE(rest) << rest.error().message.toStdString();
    EXPECT_EQ(rest->refused,
              QStringList(QStringLiteral("schlecht: ist im Archiv beschädigt (die Prüfsumme stimmt nicht)")));
    EXPECT_EQ(namesIn("out/Archiv"), (Names{"auch gut", "gut"}));
    EXPECT_EQ(tree.content("out/Archiv/auch gut"), "ebenso");

    makeTar(tree.path("a.tar"), {{"a", "eins"}, {"b", "zwei"}}, false);
    EXPECT_EQ(unpack(tree.path("a.tar"), tree.path("out"), services, control)->notes, QStringList());
    constexpr int twoEntries = 4 * 512; // each has a header and a data block
    std::filesystem::resize_file(tree.path("a.tar"), twoEntries);
    const Result<Unpacked> cut = unpack(tree.path("a.tar"), tree.path("out"), services, control);
    ASSERT_TRUE(cut);
    EXPECT_EQ(tree.content("out/a (2)/b"), "zwei");
    EXPECT_EQ(cut->notes,
              QStringList(QStringLiteral("Das Archiv ist abgeschnitten: Sein Ende fehlt, und vielleicht mehr.")));
}

TEST_F(ArchivesTest, worksOnACardAndLeavesNothingHiddenThere)
{
    const Location card = tree.folder("karte");
    const FuseMount mounted(card);
    if (!mounted)
        GTEST_SKIP() << "cannot mount a card here";
    tree.lines({"karte/a=eins"});
    ASSERT_TRUE(compress({card / "a"}, card, files, processes, control));
    makeTar(tree.path("links.tgz"), {{"x/a", std::string(600'000, 'x')}, {"x/b", {}, 0, "x/a"}, {"x/c", {}, 0, "x/b"}});
    const Result<Unpacked> unpacked = unpack(tree.path("links.tgz"), card, services, control);
    ASSERT_TRUE(unpacked) << unpacked.error().message.toStdString();
    EXPECT_EQ(tree.content("karte/x/c"), std::string(600'000, 'x'));
    EXPECT_EQ(unpacked->notes,
              QStringList(QStringLiteral(
                  "Dieser Datenträger kennt keine harten Links: 2 Einträge wurden je eine eigene Kopie.")));
    EXPECT_EQ(namesIn("karte"), (Names{"a", "a.zip", "x"}));
}

TEST_F(ArchivesTest, offersTheEmptyFileThatAKilledRenameHasLeft)
{
    makeTar(tree.path("einzeln.tgz"), {{"x", "eins"}});
    const std::vector<std::pair<std::string, std::function<void(FileActions &)>>> kinds{
        {"in/a.zip",
         [&](FileActions &there) { (void)compress({tree.path("in/a")}, tree.path("in"), there, processes, control); }},
        {"in/x", [&](FileActions &there) {
             (void)unpack(tree.path("einzeln.tgz"), tree.path("in"), {there, volumes, services.reader}, control);
         }}};
    for (const auto &[name, work] : kinds) {
        tree.lines({"in/a=eins"});
        FaultPlan faults;
        FaultyFileActions reserving(faults, volumes);
        reserving.reserving = true;
        const auto killedAt = [&, &work = work](int point) {
            const pid_t child = ::fork();
            if (child == 0) {
                faults.killAt = point;
                work(reserving);
                ::_exit(0);
            }
            int status = 0;
            ::waitpid(child, &status, 0);
            return WIFSIGNALED(status);
        };
        int reserves = 0;
        for (int point = 0; killedAt(point); ++point) {
            const std::vector<Location> left =
                abandonedHiddenFolders(tree.path("in"), std::chrono::system_clock::now() + std::chrono::hours(25));
            for (const Location &folder : left) {
                const std::optional<Location> reserve = reservedFor(folder);
                EXPECT_EQ(reserve.has_value(), tree.has(name) && tree.content(name).empty()) << point;
                reserves += reserve ? 1 : 0;
                // The next unpacking in that folder keeps it for the offer and uses another name.
                if (reserve) {
                    EXPECT_EQ(*reserve, tree.path(name));
                    EXPECT_TRUE(compress({tree.path("in/a")}, tree.path("in"), files, processes, control));
                    EXPECT_EQ(reservedFor(folder), reserve);
                    tree.file(name, "von jemandem");
                    EXPECT_EQ(reservedFor(folder), std::nullopt);
                }
                std::filesystem::remove_all(folder);
            }
            for (const auto &entry : std::filesystem::directory_iterator(tree.path("in"))) {
                if (entry.path().filename() != "a")
                    std::filesystem::remove(entry.path());
            }
        }
        EXPECT_EQ(reserves, 2) << name; // the kill points before and after creating the placeholder
    }
}

TEST_F(ArchivesTest, tellsWhoseAHiddenFolderIsAndNamesOneThatStays)
{
    const Instant now = std::chrono::system_clock::now();
    tree.lines({"in/.brellin-zip-tot/sperre=", "in/.brellin-entpacken-tot/sperre=",
                "in/.brellin-zip-fremd/sperre=eine andere Maschine", "in/.brellin-zip-werdend/inhalt/",
                "in/.brellin-zip-datei=x"});
    const HiddenFolder living = HiddenFolder::create(tree.path("in"), ".brellin-zip-lebt", files).value();
    std::vector<Location> abandoned = abandonedHiddenFolders(tree.path("in"), now);
    std::ranges::sort(abandoned);
    EXPECT_EQ(abandoned, (std::vector{tree.path("in/.brellin-entpacken-tot"), tree.path("in/.brellin-zip-tot")}));
    // Folders of another machine, and those without a lock, count as abandoned after a day.
    EXPECT_EQ(abandonedHiddenFolders(tree.path("in"), now + std::chrono::hours(25)).size(), 4U);

    class Stubborn : public DiskFileActions {
        Result<void> removeOwnCopy(const Location &) override { return failure(Failure::system(EACCES)); }
    };
    Stubborn stubborn;
    tree.lines({"out/a=eins"});
    const Result<Packed> packed = compress({tree.path("out/a")}, tree.path("out"), stubborn, processes, control);
    ASSERT_TRUE(packed);
    ASSERT_EQ(packed->notes.size(), 1);
    EXPECT_TRUE(packed->notes[0].startsWith(QStringLiteral("Der versteckte Ordner „.brellin-zip-")));
    const Result<Packed> failed = compress({tree.path("out/fehlt")}, tree.path("out"), stubborn, processes, control);
    ASSERT_FALSE(failed);
    EXPECT_TRUE(failed.error().message.contains(QStringLiteral("Der versteckte Ordner „.brellin-zip-")));
}

TEST_F(ArchivesTest, survivesWhateverBecomesOfTheReader)
{
    makeTar(tree.path("a.tgz"), {{"a", "eins"}});
    const auto readBy = [&](const char *script) {
        const Location reader = tree.file("leser", std::string("#!/bin/sh\n") + script);
        std::filesystem::permissions(reader, std::filesystem::perms::owner_all);
        return unpack(tree.path("a.tgz"), tree.path("out"), {files, volumes, reader}, control);
    };
    // The reader ends early or late, crashes, writes garbage or an impossible path, or is missing.
    const std::string entry = R"(printf 'e\040\000\000\000\000\000\000\000\001a\000\000\000\000\000\000\001\244')"
                              R"(; head -c 18 /dev/zero; )";
    for (const std::string &script :
         {std::string("exit 0"), std::string("printf 'e\\044'"), std::string("kill -SEGV $$"), std::string("yes"),
          std::string("printf 'f\\000\\000\\000\\000'"), std::string("head -c 100 /dev/zero"), entry + "exit 0",
          entry + R"(printf 'd\011\000\000\000\377\377\377\377\377\377\377\177x'; sleep 1000)"}) {
        const Result<Unpacked> unpacked = readBy(script.c_str());
        ASSERT_FALSE(unpacked) << script;
        EXPECT_TRUE(unpacked.error().message.startsWith(QStringLiteral("Das Archiv ließ sich nicht lesen"))) << script;
        EXPECT_EQ(namesIn("out"), Names()) << script;
    }
    const UnpackingServices missing{files, volumes, tree.path("fehlt")};
    EXPECT_EQ(unpack(tree.path("a.tgz"), tree.path("out"), missing, control).error().message,
              QStringLiteral("Das Programm „fehlt“ lässt sich nicht starten."));
    // A reader that hangs is killed by a cancel.
    std::jthread canceller([&] {
        (void)waitUntil([&] { return tree.has("hängt"); });
        control.cancel();
    });
    EXPECT_TRUE(readBy("touch \"$(dirname \"$0\")/hängt\"; exec sleep 1000").error().isCancelled());
    EXPECT_EQ(namesIn("out"), Names());
}

TEST_F(ArchivesTest, endsBeforeTheVolumeIsFull)
{
    class Full : public SystemVolumes {
    public:
        Result<std::int64_t> available(const Location &) const override { return 1'000'000; }
    };
    makeTar(tree.path("a.tgz"), {{"a", std::string(100, 'x')}});
    EXPECT_EQ(summarise(tree.path("a.tgz"), BRELLIN_BILD, control)->bytes, 100);
    const Full full;
    const Result<Unpacked> unpacked =
        unpack(tree.path("a.tgz"), tree.path("out"), {files, full, BRELLIN_BILD}, control);
    ASSERT_FALSE(unpacked);
    EXPECT_TRUE(unpacked.error().is(std::errc::no_space_on_device));
    EXPECT_EQ(namesIn("out"), Names());
}

TEST_F(ArchivesTest, leavesNothingOnADiskThatRunsFull)
{
    /// Reports free space that does not exist, like some network volumes.
    class Boasting : public SystemVolumes {
    public:
        Result<std::int64_t> available(const Location &) const override { return 1'000'000'000'000; }
    };
    const Boasting boasting;
    const Location disk = tree.folder("platte");
    for (int pages = 0;; ++pages) {
        SCOPED_TRACE(pages);
        const PrivateMount small(disk, "tmpfs", "size=512k");
        if (!small)
            GTEST_SKIP() << "cannot mount a small volume here";
        // Incompressible content.
        std::string noise(5'000, 'x');
        std::ranges::generate(noise,
                              [n = 1U]() mutable { return static_cast<char>((n = n * 1664525U + 1013904223U) >> 24); });
        tree.file("platte/Bilder/a", noise);
        tree.file("platte/Bilder/b", noise + noise);
        makeTar(tree.path("platte/a.tgz"), {{"a", noise}, {"c/b", noise + noise}});
        small.leaveFree(pages * 4096, "voll");
        const std::string before = snapshotOf(disk);
        const Result<Packed> packed = compress({disk / "Bilder"}, disk, files, processes, control);
        if (packed) {
            EXPECT_TRUE(std::filesystem::remove(packed->place));
        }
        EXPECT_EQ(snapshotOf(disk), before);
        const Result<Unpacked> unpacked = unpack(disk / "a.tgz", disk, {files, boasting, BRELLIN_BILD}, control);
        if (unpacked && packed) {
            EXPECT_EQ(tree.content("platte/a/c/b"), noise + noise);
            EXPECT_GT(pages, 3);
            break;
        }
        if (unpacked)
            std::filesystem::remove_all(unpacked->place);
        EXPECT_EQ(snapshotOf(disk), before);
        ASSERT_LT(pages, 40);
    }
}

TEST_F(ArchivesTest, knowsWhatItUnpacks)
{
    for (const char *name : {"a.zip", "A.ZIP", "a.tar.gz", "a.tgz", "a.tar", "a.tar.zst"})
        EXPECT_TRUE(isUnpackable(name)) << name;
    for (const char *name : {"a.gz", ".zip", "zip", "a.pdf", "a.rar"})
        EXPECT_FALSE(isUnpackable(name)) << name;
}
