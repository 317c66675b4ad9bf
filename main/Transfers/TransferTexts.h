#pragma once

#include "Transfers/TransferState.h"

#include <QString>

#include <chrono>
#include <optional>

namespace brellin {

/// „Kopiere 3 Elemente nach „Dokumente““
QString transferTitle(TransferKind kind, int count, const QString &destName);

/// Where a transfer is, for its line of text.
struct ProgressLine {
    bool measuring = false;
    std::int64_t bytes = 0;
    std::int64_t totalBytes = 0;
    std::int64_t files = 0;
    std::int64_t totalFiles = 0;
    std::chrono::milliseconds active{}; ///< time spent at work, without pauses
    bool paused = false;
    bool flushing = false;

    /// From the average rate so far; nothing while that is not to be trusted: in the first two seconds, before a hundredth is
    /// done, and in a pause.
    std::optional<std::chrono::seconds> remaining() const;
    /// "Ermittle Größe …", or "1,1 GB von 1,7 GB · 212 von 340 Dateien · noch 9 Sek.", or
    /// "Schreibe auf den Datenträger …".
    QString text() const;
};

/// "9 Sek.", "3 Min."
QString remainingText(std::chrono::seconds remaining);

} // namespace brellin
