#include "Disk/CopyEntry.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>

#include <stdlib.h>

namespace {

namespace fs = std::filesystem;

/// A temporary folder, removed at the end. Every copy gets a new name and stays until then, since some file systems
/// create files slowly after others were removed.
class Workplace {
public:
    Workplace()
    {
        std::string pattern = (fs::temp_directory_path() / "brellin-bench-XXXXXX").native();
        m_root = ::mkdtemp(pattern.data());
    }
    ~Workplace()
    {
        std::error_code ignored;
        fs::remove_all(m_root, ignored);
    }
    Workplace(const Workplace &) = delete;
    Workplace &operator=(const Workplace &) = delete;

    fs::path source() const { return m_root / "source"; }
    fs::path next() { return m_root / ("copy" + std::to_string(m_copies++)); }

private:
    fs::path m_root;
    int m_copies = 0;
};

void writeFile(const fs::path &file, std::size_t size)
{
    std::ofstream(file, std::ios::binary) << std::string(size, 'x');
}

void copyAll(benchmark::State &state, Workplace &place)
{
    for (auto iteration : state) {
        const auto report = brellin::copyEntry(place.source(), place.next());
        if (!report) {
            state.SkipWithError(report.error().message.toUtf8().constData());
            return;
        }
    }
}

void copyManySmallFiles(benchmark::State &state)
{
    Workplace place;
    const auto files = static_cast<int>(state.range(0));
    constexpr int perFolder = 100;
    for (int i = 0; i < files; ++i) {
        const fs::path folder = place.source() / std::to_string(i / perFolder);
        if (i % perFolder == 0)
            fs::create_directories(folder);
        writeFile(folder / ("Datei " + std::to_string(i) + ".txt"), 100 + static_cast<std::size_t>(i % 80) * 100);
    }
    copyAll(state, place);
    state.SetItemsProcessed(state.iterations() * files);
}
BENCHMARK(copyManySmallFiles)->Arg(20'000)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

void copyOneBigFile(benchmark::State &state)
{
    Workplace place;
    const std::int64_t mebibytes = state.range(0);
    std::ofstream stream(place.source(), std::ios::binary);
    const std::string block(std::size_t(1) << 20, 'x');
    for (std::int64_t i = 0; i < mebibytes; ++i)
        stream << block;
    stream.close();
    copyAll(state, place);
    state.SetBytesProcessed(state.iterations() * (mebibytes << 20));
}
BENCHMARK(copyOneBigFile)->Arg(512)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

} // namespace
