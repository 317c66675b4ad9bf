#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace brellin {

/// Takes note of Ctrl-C, of a polite request to end and of a terminal that goes (unless "nohup" has it ignored) while it
/// lives, so that a command can ask between two pieces of its work and end in order. A second request ends the program the
/// hard way; a terminal goes only once, however often it is told. On the main thread; several may live at once.
class InterruptionNote {
public:
    InterruptionNote();
    ~InterruptionNote();
    InterruptionNote(const InterruptionNote &) = delete;
    InterruptionNote &operator=(const InterruptionNote &) = delete;

    /// Since the first of those that live.
    bool heard() const;
};

/// Hears it as a call on the main thread; what a note around it has taken down before is heard as soon as events are.
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
