#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace brellin {

/// While it exists, records SIGINT, SIGTERM and SIGHUP (unless ignored by "nohup"), so that a command can check between
/// two steps and end cleanly. A repeated SIGINT or SIGTERM kills the process; a repeated SIGHUP is ignored. Main thread
/// only; may be nested.
class InterruptionNote {
public:
    InterruptionNote();
    ~InterruptionNote();
    InterruptionNote(const InterruptionNote &) = delete;
    InterruptionNote &operator=(const InterruptionNote &) = delete;

    /// Whether a signal has arrived since the outermost existing note was created.
    bool heard() const;
};

/// Reports the signal as a call on the main thread. One that an outer note has recorded before is reported once the
/// event loop runs.
class Interruption {
public:
    explicit Interruption(std::function<void()> heard);
    Interruption(const Interruption &) = delete;
    Interruption &operator=(const Interruption &) = delete;

private:
    InterruptionNote m_note;
    std::function<void()> m_heard;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace brellin
