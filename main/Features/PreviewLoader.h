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

/// What the preview shows of the entry that is chosen, found out in the background. Lives on the main thread; settings,
/// volumes, decoder and clock outlive it.
class PreviewLoader : public Model<PreviewLoader> {
public:
    PreviewLoader(const UserDefaults &defaults, const Volumes &volumes, Decoder &decoder, Clock &clock);
    ~PreviewLoader() override;

    Published<PreviewContent> content;

    /// Shows another entry, from its first page; none: nothing is shown. The entry that is shown is read again, and stays as
    /// it is until that is done.
    void show(const std::optional<Location> &entry);
    /// Another page of the document that is shown, from 0.
    void showPage(int page);
    /// How large a picture is wanted, in device pixels.
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
    const std::shared_ptr<QThreadPool> m_networkPool; ///< a server that does not answer holds up nothing else
    std::optional<PreviewWish> m_wish;
    int m_side = 512;
    PreviewContent m_basics;
    QTimer m_pause;
    Part m_job; ///< goes first, with its work cancelled
};

} // namespace brellin
