#include "Support/AgentWait.h"

#include <QEventLoop>

namespace brellin::test {

void wait(CleanupAgent &agent, const std::function<void()> &operation)
{
    QEventLoop loop;
    QObject watcher;
    operation();
    agent.running.observe(&watcher, [&](bool) { loop.quit(); });
    while (agent.running.get())
        loop.exec();
}

} // namespace brellin::test
