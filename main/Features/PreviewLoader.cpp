#include "Features/PreviewLoader.h"

#include "Base/AbandonablePool.h"
#include "Features/NetworkSettings.h"

#include <algorithm>

namespace brellin {

using namespace std::chrono_literals;

namespace {

/// Delay before loading the content, so that holding an arrow key loads only the last entry.
constexpr auto pause = 60ms;

} // namespace

PreviewLoader::PreviewLoader(const UserDefaults &defaults, const Volumes &volumes, Decoder &decoder, Clock &clock)
    : m_defaults(defaults)
    , m_volumes(volumes)
    , m_decoder(decoder)
    , m_clock(clock)
    , m_localPool(abandonablePool(2s))
    , m_networkPool(abandonablePool(2s))
{
    // A cancelled job may still be finishing while the next one starts.
    m_localPool->setMaxThreadCount(2);
    m_pause.setSingleShot(true);
    connect(&m_pause, &QTimer::timeout, this, [this] { complete(); });
}

PreviewLoader::~PreviewLoader() = default;

void PreviewLoader::show(const std::optional<Location> &entry)
{
    if (!entry) {
        m_wish.reset();
        m_pause.stop();
        m_job.reset();
        publish(content, PreviewContent());
        return;
    }
    const bool same = m_wish && m_wish->entry == *entry;
    m_wish = PreviewWish{*entry, same ? m_wish->page : 0, m_side, true, m_clock.now()};
    load();
}

void PreviewLoader::showPage(int page)
{
    if (!m_wish || page < 0 || page == m_wish->page)
        return;
    m_wish->page = page;
    load();
}

void PreviewLoader::setSide(int side)
{
    side = std::clamp(side, 64, mostPictureSide);
    m_side = side;
    if (!m_wish || side <= m_wish->side)
        return;
    m_wish->side = side;
    const PreviewBody &body = content.get().body;
    const bool hasPicture = std::holds_alternative<PreviewPicture>(body) || std::holds_alternative<PreviewPage>(body);
    if (hasPicture || content.get().state == PreviewContent::State::Loading)
        load();
}

QThreadPool &PreviewLoader::pool()
{
    return m_volumes.isLocal(m_wish->entry) ? *m_localPool : *m_networkPool;
}

void PreviewLoader::load()
{
    m_pause.stop();
    if (content.get().entry != m_wish->entry || content.get().state == PreviewContent::State::Empty) {
        PreviewContent loading;
        loading.state = PreviewContent::State::Loading;
        loading.entry = m_wish->entry;
        loading.name = shownName(m_wish->entry);
        publish(content, std::move(loading));
    }
    m_job = std::make_unique<Job<PreviewContent>>();
    m_job->start(
        pool(), [wish = *m_wish](JobControl &) { return beginPreview(wish); },
        [this](const PreviewContent &basics) { begun(basics); });
}

void PreviewLoader::begun(const PreviewContent &basics)
{
    m_basics = basics;
    const bool failed = basics.state == PreviewContent::State::Failed;
    if (failed || content.get().state == PreviewContent::State::Loading)
        publish(content, basics);
    // An observer may have selected another entry.
    if (!failed && m_wish && m_wish->entry == basics.entry)
        m_pause.start(pause);
}

void PreviewLoader::complete()
{
    if (!m_wish || m_wish->entry != m_basics.entry)
        return;
    m_wish->countsFolders = m_volumes.isLocal(m_wish->entry) || folderSizesNetwork.isOn(m_defaults);
    m_job = std::make_unique<Job<PreviewContent>>();
    m_job->start(
        pool(),
        [wish = *m_wish, basics = m_basics, decoder = &m_decoder](JobControl &control) {
            if (control.cancelled())
                return basics;
            return completePreview(basics, wish, *decoder, control);
        },
        [this](const PreviewContent &complete) { publish(content, complete); });
}

} // namespace brellin
