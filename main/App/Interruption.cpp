#include "App/Interruption.h"

#include <array>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace brellin {

namespace {

/// A signal handler may do little more than write a byte; the notifier reads it in the event loop.
std::array<int, 2> signalPipe{-1, -1};

void onSignal(int number)
{
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = ::write(signalPipe[1], &byte, 1);
    ::signal(number, SIG_DFL);
}

} // namespace

Interruption::Interruption(std::function<void()> heard) : m_heard(std::move(heard))
{
    if (::pipe2(signalPipe.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(signalPipe[0], QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this] {
        char byte = 0;
        while (::read(signalPipe[0], &byte, 1) > 0) {
        }
        m_heard();
    });
    ::signal(SIGINT, onSignal);
    ::signal(SIGTERM, onSignal);
}

Interruption::~Interruption()
{
    ::signal(SIGINT, SIG_DFL);
    ::signal(SIGTERM, SIG_DFL);
    m_notifier.reset();
    for (int &end : signalPipe) {
        if (end >= 0)
            ::close(end);
        end = -1;
    }
}

} // namespace brellin
