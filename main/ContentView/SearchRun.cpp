#include "ContentView/SearchRun.h"

#include <utility>

namespace brellin {

namespace {

constexpr std::chrono::milliseconds sampleDelay{100};

} // namespace

SearchRun::SearchRun(MountWorkers &workers, std::function<void(const FolderSearchResult &)> found,
                     std::function<void(const FolderSearchResult &)> ended)
    : m_workers(workers)
    , m_found(std::move(found))
    , m_ended(std::move(ended))
{
    m_sampling.setInterval(sampleDelay);
    QObject::connect(&m_sampling, &QTimer::timeout, &m_sampling, [this] { sample(); });
}

/// Runs outside the mount's queue, since a search is long and would block other calls to that mount.
void SearchRun::start(const Location &where, Work work)
{
    drop();
    m_call.start(
        m_workers, {where, FileCall<FolderSearchResult>::Patience::None, MountWorkers::Turn::AtOnce}, std::move(work),
        [this](const FolderSearchResult &result) {
            drop();
            m_ended(result);
        },
        [] {});
}

void SearchRun::showMatches(std::shared_ptr<SearchMatches> matches)
{
    if (!m_call.running())
        return;
    m_matches = std::move(matches);
    m_sampling.start();
}

void SearchRun::sample()
{
    if (m_shown == m_matches->size())
        return;
    const FolderSearchResult found = m_matches->result();
    m_shown = found.items.size();
    m_found(found);
}

void SearchRun::drop()
{
    m_call.drop();
    m_sampling.stop();
    m_matches.reset();
    m_shown.reset();
}

} // namespace brellin
