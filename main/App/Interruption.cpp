#include "App/Interruption.h"

#include <array>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace brellin {

namespace {

/// Self-pipe: the handler writes a byte, and the notifier reads it in the event loop. Never closed, since a handler on
/// another thread may still be about to write.
std::array<int, 2> signalPipe{-1, -1};
volatile std::sig_atomic_t signalCame = 0;
int notes = 0;
/// False under "nohup": work continues when the terminal is closed.
bool mindsTerminal = false;

void wake()
{
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = ::write(signalPipe[1], &byte, 1);
}

void drain()
{
    char byte = 0;
    while (::read(signalPipe[0], &byte, 1) > 0) {
    }
}

void onSignal(int number)
{
    signalCame = 1;
    wake();
    // Both the shell and the kernel send SIGHUP when a terminal is closed: the second one does not count as a repeated
    // request.
    ::signal(number, number == SIGHUP ? SIG_IGN : SIG_DFL);
}

bool isIgnored(int number)
{
    struct sigaction now{};
    return ::sigaction(number, nullptr, &now) == 0 && now.sa_handler == SIG_IGN;
}

void handleSignals(void (*handler)(int))
{
    ::signal(SIGINT, handler);
    ::signal(SIGTERM, handler);
    if (mindsTerminal)
        ::signal(SIGHUP, handler);
}

} // namespace

InterruptionNote::InterruptionNote()
{
    if (notes++ > 0)
        return;
    if (signalPipe[0] < 0 && ::pipe2(signalPipe.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    drain();
    signalCame = 0;
    mindsTerminal = !isIgnored(SIGHUP);
    handleSignals(onSignal);
}

InterruptionNote::~InterruptionNote()
{
    if (--notes > 0)
        return;
    handleSignals(SIG_DFL);
}

bool InterruptionNote::heard() const
{
    return signalCame != 0;
}

Interruption::Interruption(std::function<void()> heard) : m_heard(std::move(heard))
{
    if (signalPipe[0] < 0)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(signalPipe[0], QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this] {
        drain();
        m_heard();
    });
    // An earlier notifier may have consumed the byte.
    if (m_note.heard())
        wake();
}

} // namespace brellin
