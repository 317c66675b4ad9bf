#include "Agent/Rules/ExampleRules.h"
#include "Agent/Rules/RuleMatching.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

#include <fcntl.h>
#include <sys/stat.h>

using namespace brellin;

namespace {

constexpr int files = 100'000;

/// A home folder with 100,000 files, flat in Downloads and in a hundred folders; exists until the program ends. Nine of
/// ten files are too young for any rule.
class Home {
public:
    Home()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "brellin-bench-XXXXXX").native();
        if (::mkdtemp(pattern.data()) == nullptr)
            throw std::runtime_error("cannot create " + pattern);
        root = pattern;
        constexpr std::array kinds{"Foto %.jpg",  "IMG_%.HEIC",   "Angebot %.pdf", "archiv-%.zip", "Film %.mp4",
                                   "notiz %.txt", "Gerät %.docx", "setup-%.dmg",   "daten-%.csv",  "ohne-%"};
        for (int i = 0; i < files; ++i) {
            std::string name = kinds.at(static_cast<std::size_t>(i) % kinds.size());
            name.replace(name.find('%'), 1, std::to_string(i));
            place(root / "Downloads" / name, i);
            place(root / "Ordner" / std::to_string(i % 100) / name, i);
        }
    }
    ~Home() { std::filesystem::remove_all(root); }
    Home(const Home &) = delete;
    Home &operator=(const Home &) = delete;

    static const Home &shared()
    {
        static const Home home;
        return home;
    }

    Location root;
    SystemClock clock;

private:
    void place(const Location &file, int number) const
    {
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file) << number;
        const std::chrono::days age(number % 97 < 9 ? 120 : 1);
        const auto then = std::chrono::floor<std::chrono::seconds>(clock.now() - age).time_since_epoch().count();
        const std::array<timespec, 2> times{timespec{then, 0}, timespec{then, 0}};
        ::utimensat(AT_FDCWD, file.c_str(), times.data(), 0);
    }
};

/// The ten example rules, all applied to one folder.
std::vector<CleanupRule> tenRules(const Location &folder, bool includeSubfolders)
{
    std::vector<CleanupRule> rules = exampleRules(KnownFolders::ofThisUser());
    for (CleanupRule &rule : rules) {
        rule.sourcePath = textOf(folder);
        rule.includeSubfolders = includeSubfolders;
    }
    return rules;
}

void evaluate(benchmark::State &state, const std::vector<CleanupRule> &rules)
{
    const Home &home = Home::shared();
    const SystemLocations locations(home.root);
    const RuleMatching matching(locations, home.clock);
    for (auto _ : state) {
        const RuleEvaluation found = matching.evaluateCounting(rules).value();
        state.counters["candidates"] = static_cast<double>(found.candidates.size());
    }
    state.SetItemsProcessed(state.iterations() * files);
}

void TenRulesFlat(benchmark::State &state)
{
    evaluate(state, tenRules(Home::shared().root / "Downloads", false));
}
BENCHMARK(TenRulesFlat)->Unit(benchmark::kMillisecond)->UseRealTime();

void TenRulesDeep(benchmark::State &state)
{
    evaluate(state, tenRules(Home::shared().root / "Ordner", true));
}
BENCHMARK(TenRulesDeep)->Unit(benchmark::kMillisecond)->UseRealTime();

/// Every file becomes a candidate.
void EveryFileTaken(benchmark::State &state)
{
    CleanupRule rule;
    rule.sourcePath = textOf(Home::shared().root / "Downloads");
    rule.targetPath = QStringLiteral("~/Ziel/{Jahr}-{Monat}/{Kategorie}");
    evaluate(state, {rule});
}
BENCHMARK(EveryFileTaken)->Unit(benchmark::kMillisecond)->UseRealTime();

void IsAllowed(benchmark::State &state)
{
    const Home &home = Home::shared();
    const SystemLocations locations(home.root);
    const Location file = home.root / "Ordner/7/IMG_1107.HEIC";
    for (auto _ : state)
        benchmark::DoNotOptimize(locations.isAllowed(file));
}
BENCHMARK(IsAllowed);

void IsAllowedEntry(benchmark::State &state)
{
    const Home &home = Home::shared();
    const SystemLocations locations(home.root);
    const Location file = home.root / "Ordner/7/IMG_1107.HEIC";
    for (auto _ : state)
        benchmark::DoNotOptimize(locations.isAllowedEntry(file));
}
BENCHMARK(IsAllowedEntry);

void IsAllowedTargetToBeMade(benchmark::State &state)
{
    const Home &home = Home::shared();
    const SystemLocations locations(home.root);
    const Location file = home.root / "Ziel/2026-09/Bilder/IMG_1107.HEIC";
    for (auto _ : state)
        benchmark::DoNotOptimize(locations.isAllowed(file));
}
BENCHMARK(IsAllowedTargetToBeMade);

} // namespace
