// Measures walking trees. The trees are created in the temporary folder on first use and removed at the end.
// BRELLIN_BENCH_FOLDERS and BRELLIN_BENCH_FILES (per folder) set the size of the wide tree, BRELLIN_BENCH_FLAT the
// number of files in the flat one. BRELLIN_BENCH_TREE names an existing tree to walk instead of the wide one, for
// comparing with other programs on the same files.

#include "Disk/Walk.h"

#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

using namespace brellin;

namespace {

int setting(const char *name, int usual)
{
    const char *value = std::getenv(name);
    return value != nullptr ? std::atoi(value) : usual;
}

/// Folders in two levels with empty files in each.
class Tree {
public:
    Tree(int folders, int files)
    {
        std::string name = (std::filesystem::temp_directory_path() / "brellin-bench-XXXXXX").native();
        if (::mkdtemp(name.data()) == nullptr)
            throw std::runtime_error("cannot create " + name);
        m_root = name;
        constexpr int foldersInOne = 40;
        for (int folder = 0; folder < folders; ++folder) {
            const Location place =
                m_root / ("Ordner " + std::to_string(folder / foldersInOne)) / ("Jahr " + std::to_string(folder));
            std::filesystem::create_directories(place);
            for (int file = 0; file < files; ++file)
                std::ofstream(place / ("Rechnung " + std::to_string(file) + ".pdf"));
        }
    }
    ~Tree()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_root, ignored);
    }
    Tree(const Tree &) = delete;
    Tree &operator=(const Tree &) = delete;

    const Location &root() const { return m_root; }

private:
    Location m_root;
};

Location wide()
{
    if (const char *existing = std::getenv("BRELLIN_BENCH_TREE"))
        return existing;
    static const Tree tree(setting("BRELLIN_BENCH_FOLDERS", 2000), setting("BRELLIN_BENCH_FILES", 100));
    return tree.root();
}

Location flat()
{
    static const Tree tree(1, setting("BRELLIN_BENCH_FLAT", 100'000));
    return tree.root();
}

/// Simulates a search by name: tests every name, with few hits.
bool isHit(const WalkEntry &entry)
{
    return entry.name.find("Rechnung 77") != std::string_view::npos;
}

void walkSerially(benchmark::State &state, Location (*tree)(), Attribute attributes)
{
    const Location root = tree();
    std::int64_t hits = 0;
    std::int64_t entries = 0;
    for (auto _ : state) {
        const auto outcome = walk(root, {.attributes = attributes}, [&hits](const WalkEntry &entry) {
            hits += isHit(entry) ? 1 : 0;
            return WalkStep::Continue;
        });
        entries += outcome ? outcome->entries : 0;
    }
    benchmark::DoNotOptimize(hits);
    state.SetItemsProcessed(entries);
}

void walkInParallel(benchmark::State &state, Location (*tree)(), Attribute attributes)
{
    const Location root = tree();
    std::atomic<std::int64_t> hits = 0;
    std::int64_t entries = 0;
    for (auto _ : state) {
        const auto outcome = walkParallel(root, {.attributes = attributes}, [&hits](const WalkEntry &entry, int) {
            if (isHit(entry))
                ++hits;
            return WalkStep::Continue;
        });
        entries += outcome ? outcome->entries : 0;
    }
    state.SetItemsProcessed(entries);
}

constexpr Attribute sizeAndTime = Attribute::Size | Attribute::Modified;
constexpr Attribute asRulesDo = sizeAndTime | Attribute::Identity;

// Real time: CPU time would exclude the other threads.
#define MEASURE(function, name, ...)                                                                                   \
    BENCHMARK_CAPTURE(function, name, __VA_ARGS__)->Unit(benchmark::kMillisecond)->UseRealTime()

MEASURE(walkSerially, names, wide, Attribute::None);
MEASURE(walkInParallel, names, wide, Attribute::None);
MEASURE(walkSerially, sizesAndTimes, wide, sizeAndTime);
MEASURE(walkInParallel, sizesAndTimes, wide, sizeAndTime);
MEASURE(walkSerially, asRulesDo, wide, asRulesDo);
MEASURE(walkInParallel, asRulesDo, wide, asRulesDo);
MEASURE(walkSerially, oneHugeFolder, flat, sizeAndTime);
MEASURE(walkInParallel, oneHugeFolder, flat, sizeAndTime);

} // namespace
