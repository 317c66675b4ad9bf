#pragma once

#include "Base/Job.h"
#include "Base/Published.h"
#include "Disk/Volumes.h"
#include "Features/PreviewMaking.h"
#include "System/UserDefaults.h"

#include <QThreadPool>
#include <QTimer>

#include <memory>
#include <optional>

namespace brellin {

/// Loads the preview of the selected entry on workers. Lives on the main thread; settings, volumes, decoder and clock
/// must outlive it.
class PreviewLoader : public Model<PreviewLoader> {
public:
    PreviewLoader(const UserDefaults &defaults, const Volumes &volumes, Decoder &decoder, Clock &clock);
    ~PreviewLoader() override;

    Published<PreviewContent> content;

    /// Shows another entry, from its first page; nullopt: nothing. The same entry again is reloaded, and stays visible
    /// until that is done.
    void show(const std::optional<Location> &entry);
    /// Shows another page of the document, counted from 0.
    void showPage(int page);
    /// Sets the size of pictures in device pixels.
    void setSide(int side);

private:
    using Part = std::unique_ptr<Job<PreviewContent>>;

    void load();
    void begun(const PreviewContent &basics);
    void complete();
    QThreadPool &pool();

    const UserDefaults &m_defaults;
    const Volumes &m_volumes;
    Decoder &m_decoder;
    Clock &m_clock;
    const std::shared_ptr<QThreadPool> m_localPool;
    const std::shared_ptr<QThreadPool> m_networkPool; ///< separate, so that an unresponsive server blocks only itself
    std::optional<PreviewWish> m_wish;
    int m_side = 512;
    PreviewContent m_basics;
    QTimer m_pause;
    Part m_job; ///< destroyed first, which cancels its work
};

} // namespace brellin
