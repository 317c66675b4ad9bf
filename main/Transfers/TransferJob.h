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

/// A transfer as shown by a panel, from its planning on. Lives on the main thread; the worker only accesses `state`.
class TransferJob : public Model<TransferJob> {
public:
    struct Start {
        QUuid id;
        QUuid pane;
        TransferKind kind = TransferKind::Copy;
        Location destination;
        QString destName; ///< display name of the destination folder
        int count = 0;    ///< number of sources
    };
    explicit TransferJob(Start start);

    const QUuid id;
    const QUuid pane; ///< the pane that requested it
    const bool move;
    const Location destination;
    const QString destName;
    Published<int> count; ///< number of steps; number of sources until planned
    const std::shared_ptr<TransferState> state;
    const std::chrono::steady_clock::time_point started = std::chrono::steady_clock::now();

    Published<std::int64_t> totalBytes;
    Published<std::int64_t> totalFiles;
    Published<std::int64_t> bytes;
    Published<std::int64_t> files;
    Published<QString> currentName;
    Published<bool> measuring{true};
    Published<bool> paused;
    Published<bool> cancelling;    ///< cancelled, but not ended yet
    Published<std::int64_t> rate;  ///< bytes per second over the last 3 seconds; 0 if unknown
    Published<QString> detailText; ///< `detail()` at the last refresh

    /// Publishes the worker's progress; called every 200 ms.
    void refresh();
    /// Share of bytes done, 0 to 1.
    double fraction() const;
    /// „Kopiere 3 Elemente nach „Dokumente““.
    QString title() const;
    /// "1,1 GB von 1,7 GB · 212 von 340 Dateien · noch 9 Sek."
    QString detail() const;
    /// "45 MB/s"; empty if unknown.
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

    /// Called when the steps are planned.
    void plan(std::size_t steps);
    /// Called when the run begins.
    void begin(std::size_t steps, const TransferSize &total);
    std::chrono::milliseconds active() const;
    std::int64_t measureRate(std::int64_t now);

    std::chrono::milliseconds m_activeBefore{}; ///< working time up to the last pause
    std::optional<Clock::time_point> m_activeSince;
    std::deque<Sample> m_samples;
    QTimer m_timer;
};

} // namespace brellin
