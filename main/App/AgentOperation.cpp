#include "App/AgentOperation.h"

#include "App/Interruption.h"

#include <QEventLoop>
#include <QTimer>

namespace brellin {

namespace {

QString progressLine(const CleanupAgent &agent)
{
    QString line = agent.status.get();
    if (agent.progress.get() > 0)
        line += QStringLiteral("  %1 %").arg(static_cast<int>(agent.progress.get() * 100));
    if (!agent.detail.get().isEmpty())
        line += QStringLiteral("  ") + agent.detail.get();
    return line;
}

} // namespace

void runOperation(CleanupAgent &agent, Terminal &terminal,
                  const std::function<void(const std::function<void()> &)> &start)
{
    QEventLoop loop;
    bool over = false;
    const Interruption interruption([&] { agent.cancel(); });
    QTimer progress;
    QObject::connect(&progress, &QTimer::timeout, &progress, [&] {
        terminal.progress(progressLine(agent));
        progress.setInterval(200);
    });
    progress.start(1000);
    start([&] {
        over = true;
        loop.quit();
    });
    if (!over)
        loop.exec();
    terminal.clearProgress();
}

ExitCode exitCodeOf(const Failure &failure, Terminal &terminal)
{
    // What to do about damaged data is the user's decision.
    const QString how =
        failure.is(std::errc::illegal_byte_sequence) ? QStringLiteral(" Wie es weitergeht: brellin daten") : QString();
    terminal.message(failure.message + how);
    return failure.isCancelled() ? ExitCode::Cancelled : ExitCode::NotPossible;
}

} // namespace brellin
