#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace brellin {

/// Hears Ctrl-C (and a polite request to end) while it lives, as a call on the main thread. A second one ends the program
/// the hard way.
class Interruption {
public:
    explicit Interruption(std::function<void()> heard);
    ~Interruption();
    Interruption(const Interruption &) = delete;
    Interruption &operator=(const Interruption &) = delete;

private:
    std::function<void()> m_heard;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace brellin
