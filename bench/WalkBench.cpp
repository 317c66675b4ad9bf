#include "Disk/Walk.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

using namespace brellin;

namespace {

/// 100 folders of 200 empty files, made once and removed at the end.
class Tree {
public:
    static const Location &folder()
    {
        static const Tree tree;
        return tree.m_folder;
    }

    Tree(const Tree &) = delete;
    Tree &operator=(const Tree &) = delete;

private:
    Tree()
    {
        std::string name = (std::filesystem::temp_directory_path() / "brellin-bench-XXXXXX").native();
        m_folder = ::mkdtemp(name.data());
        for (int folder = 0; folder < 100; ++folder) {
            const Location inner = m_folder / ("Ordner " + std::to_string(folder));
            std::filesystem::create_directory(inner);
            for (int file = 0; file < 200; ++file)
                std::ofstream(inner / ("Datei " + std::to_string(file) + ".txt"));
        }
    }
    ~Tree() { std::filesystem::remove_all(m_folder); }

    Location m_folder;
};

void walkSerially(benchmark::State &state, Attribute attributes)
{
    std::int64_t entries = 0;
    for (auto _ : state) {
        const auto outcome = walk(Tree::folder(), {.attributes = attributes}, [](const WalkEntry &entry) {
            benchmark::DoNotOptimize(entry.name.data());
            return WalkStep::Continue;
        });
        entries += outcome ? outcome->entries : 0;
    }
    state.SetItemsProcessed(entries);
}
BENCHMARK_CAPTURE(walkSerially, namesOnly, Attribute::None)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(walkSerially, asRulesDo, Attribute::Identity | Attribute::Size | Attribute::Modified)
    ->Unit(benchmark::kMillisecond);

void walkInParallel(benchmark::State &state, Attribute attributes)
{
    std::int64_t entries = 0;
    for (auto _ : state) {
        const auto outcome = walkParallel(Tree::folder(), {.attributes = attributes}, [](const WalkEntry &entry, int) {
            benchmark::DoNotOptimize(entry.name.data());
            return WalkStep::Continue;
        });
        entries += outcome ? outcome->entries : 0;
    }
    state.SetItemsProcessed(entries);
}
BENCHMARK_CAPTURE(walkInParallel, namesOnly, Attribute::None)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(walkInParallel, asRulesDo, Attribute::Identity | Attribute::Size | Attribute::Modified)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

} // namespace
