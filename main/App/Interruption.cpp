#include "App/Interruption.h"

#include <array>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace brellin {

namespace {

/// A signal handler may do little more than write a byte; the notifier reads it in the event loop. Never closed: a handler
/// on another thread may still be about to write.
std::array<int, 2> signalPipe{-1, -1};
volatile std::sig_atomic_t signalCame = 0;
int notes = 0;
/// "nohup" says that work goes on when the terminal goes.
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
    // A terminal that goes is told of by its shell and by the system: the second telling is no request.
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
    // Another may have read the byte of the one that came before.
    if (m_note.heard())
        wake();
}

} // namespace brellin
