#include "ContentView/ItemOrder.h"
#include "ContentView/Listing.h"
#include "ContentView/Selection.h"

#include <benchmark/benchmark.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <random>

#include <malloc.h>

using namespace brellin;

namespace {

/// A folder of empty files, removed at the end.
class FlatFolder {
public:
    explicit FlatFolder(int files)
        : m_root(std::filesystem::temp_directory_path() / ("brellin-bench-list-" + std::to_string(files)))
    {
        std::filesystem::create_directories(m_root);
        for (int i = 0; i < files; ++i)
            std::ofstream(m_root / ("Datei " + std::to_string(i) + ".txt"));
    }
    ~FlatFolder() { std::filesystem::remove_all(m_root); }
    FlatFolder(const FlatFolder &) = delete;
    FlatFolder &operator=(const FlatFolder &) = delete;

    const Location &root() const { return m_root; }

private:
    Location m_root;
};

/// Entries with names, sizes and times as a busy folder has them.
FileItems someItems(int count)
{
    std::mt19937 random(1);
    const auto folder = std::make_shared<const std::string>("/ordner");
    constexpr std::array kinds{"txt", "pdf", "jpg", "zip"};
    std::vector<FileItem> items;
    for (int i = 0; i < count; ++i) {
        FileItem item;
        item.folder = folder;
        item.nameBytes = "Datei " + std::to_string(random() % 1'000'000) + "." + kinds[random() % kinds.size()];
        item.size = static_cast<std::int64_t>(random() % 1'000'000);
        item.modified = Instant(std::chrono::seconds(random()));
        item.kind = kindOfFile(item.nameBytes);
        items.push_back(std::move(item));
    }
    return FileItems(std::move(items));
}

void readAndSort(benchmark::State &state)
{
    const FlatFolder folder(static_cast<int>(state.range(0)));
    const SystemVolumes volumes;
    for (auto _ : state) {
        const Listing listing = readListing(folder.root(), HiddenEntries::LeftOut, volumes);
        benchmark::DoNotOptimize(displayed(listing.items, {}));
    }
}
BENCHMARK(readAndSort)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime();

void memoryOfAnEntry(benchmark::State &state)
{
    const FlatFolder folder(static_cast<int>(state.range(0)));
    const SystemVolumes volumes;
    double bytes = 0;
    for (auto _ : state) {
        const std::size_t before = ::mallinfo2().uordblks + ::mallinfo2().hblkhd;
        const Listing listing = readListing(folder.root(), HiddenEntries::LeftOut, volumes);
        const DisplayedItems rows = displayed(listing.items, {});
        bytes = static_cast<double>(::mallinfo2().uordblks + ::mallinfo2().hblkhd - before);
    }
    state.counters["bytes"] = bytes / static_cast<double>(state.range(0));
}
BENCHMARK(memoryOfAnEntry)->Arg(100'000)->Iterations(1);

/// The cost of a click on a column header.
void sortAgain(benchmark::State &state, SortKey key)
{
    const FileItems items = someItems(static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(displayed(items, {.order = {{key, SortDirection::Descending}}}));
}
BENCHMARK_CAPTURE(sortAgain, name, SortKey::Name)->Arg(20'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(sortAgain, size, SortKey::Size)->Arg(20'000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(sortAgain, modified, SortKey::Modified)->Arg(20'000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(sortAgain, kind, SortKey::Kind)->Arg(20'000)->Unit(benchmark::kMillisecond);

/// A refresh that only changes sizes.
void sameRows(benchmark::State &state)
{
    const FileItems items = someItems(static_cast<int>(state.range(0)));
    const DisplayedItems before = displayed(items, {});
    const DisplayedItems after = displayed(FileItems(std::vector<FileItem>(items.begin(), items.end())), {});
    for (auto _ : state)
        benchmark::DoNotOptimize(before.hasSameRows(after));
}
BENCHMARK(sameRows)->Arg(100'000)->Unit(benchmark::kMillisecond);

/// What Ctrl+A costs a pane: the selection, the ranges of its views and the summary for commands and the status line.
void selectAll(benchmark::State &state, std::size_t hidden)
{
    const FileItems items = someItems(static_cast<int>(state.range(0)));
    const auto filter = [&](const FileItem &item) { return &item - &items[0] >= static_cast<std::ptrdiff_t>(hidden); };
    const DisplayedItems rows = displayed(items, {.filter = filter});
    for (auto _ : state) {
        const Selection all = Selection::ofAll(rows);
        std::size_t selected = 0;
        for (std::size_t row = 0; row < rows.size(); ++row)
            selected += all.contains(rows[row]) ? 1 : 0;
        benchmark::DoNotOptimize(selected);
        benchmark::DoNotOptimize(summaryOf(items, all));
    }
}
BENCHMARK_CAPTURE(selectAll, whole, 0)->Arg(100'000)->Unit(benchmark::kMillisecond);
/// With a filter that hides something the entries are looked up by their paths.
BENCHMARK_CAPTURE(selectAll, filtered, 1)->Arg(100'000)->Unit(benchmark::kMillisecond);

} // namespace
