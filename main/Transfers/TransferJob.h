#pragma once

#include "Base/Published.h"
#include "Transfers/TransferState.h"

#include <QTimer>
#include <QUuid>

#include <chrono>
#include <deque>
#include <memory>
#include <optional>

namespace brellin {

/// A transfer under way, as a panel shows it, from its planning on. Lives on the main thread; the worker sees its `state` alone.
class TransferJob : public Model<TransferJob> {
public:
    struct Start {
        QUuid id;
        QUuid pane;
        TransferKind kind = TransferKind::Copy;
        Location destination;
        QString destName; ///< the destination folder's name for reading
        int count = 0;    ///< sources
    };
    explicit TransferJob(Start start);

    const QUuid id;
    const QUuid pane; ///< which one asked for it
    const bool move;
    const Location destination;
    const QString destName;
    Published<int> count; ///< steps; until they are planned, sources
    const std::shared_ptr<TransferState> state;
    const std::chrono::steady_clock::time_point started = std::chrono::steady_clock::now();

    Published<std::int64_t> totalBytes;
    Published<std::int64_t> totalFiles;
    Published<std::int64_t> bytes;
    Published<std::int64_t> files;
    Published<QString> currentName;
    Published<bool> measuring{true};
    Published<bool> paused;
    Published<bool> cancelling;    ///< cancelled, and not yet ended
    Published<std::int64_t> rate;  ///< bytes a second over the last seconds; 0 while nobody can tell
    Published<QString> detailText; ///< `detail()` as of the last refresh

    /// Publishes what the worker has got to; called every 0.2 seconds.
    void refresh();
    /// Done, from 0 to 1.
    double fraction() const;
    /// „Kopiere 3 Elemente nach „Dokumente““
    QString title() const;
    /// "1,1 GB von 1,7 GB · 212 von 340 Dateien · noch 9 Sek."
    QString detail() const;
    /// "45 MB/s"; empty while nobody can tell.
    QString rateText() const;

    void cancel();
    void setPaused(bool on);

private:
    friend class Transfer;
    using Clock = std::chrono::steady_clock;
    struct Sample {
        Clock::time_point when;
        std::int64_t bytes = 0;
    };

    /// It is known what there is to do, …
    void plan(std::size_t steps);
    /// … and it begins.
    void begin(std::size_t steps, const TransferSize &total);
    std::chrono::milliseconds active() const;
    std::int64_t measureRate(std::int64_t now);

    std::chrono::milliseconds m_activeBefore{}; ///< working time up to the last pause
    std::optional<Clock::time_point> m_activeSince;
    std::deque<Sample> m_samples;
    QTimer m_timer;
};

} // namespace brellin
