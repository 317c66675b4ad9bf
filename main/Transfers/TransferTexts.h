#pragma once

#include "Transfers/TransferState.h"

#include <QString>

#include <chrono>
#include <optional>

namespace brellin {

/// „Kopiere 3 Elemente nach „Dokumente““.
QString transferTitle(TransferKind kind, int count, const QString &destName);

/// Progress of a transfer, for its status line.
struct ProgressLine {
    bool measuring = false;
    std::int64_t bytes = 0;
    std::int64_t totalBytes = 0;
    std::int64_t files = 0;
    std::int64_t totalFiles = 0;
    std::chrono::milliseconds active{}; ///< working time without pauses
    bool paused = false;
    bool flushing = false;

    /// Estimated from the average rate; none while unreliable: while measuring or paused, in the first two seconds, and
    /// below 1 %.
    std::optional<std::chrono::seconds> remaining() const;
    /// "Ermittle Größe …", "1,1 GB von 1,7 GB · 212 von 340 Dateien · noch 9 Sek." or "Schreibe auf den Datenträger …".
    QString text() const;
};

/// "9 Sek." or "3 Min."
QString remainingText(std::chrono::seconds remaining);

} // namespace brellin
