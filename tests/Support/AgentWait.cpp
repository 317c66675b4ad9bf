#include "Support/AgentWait.h"

#include <QEventLoop>

namespace brellin::test {

void wait(CleanupAgent &agent, const std::function<void()> &operation)
{
    QEventLoop loop;
    agent.whenFinished([&] { loop.quit(); });
    operation();
    if (agent.running.get())
        loop.exec();
    agent.whenFinished({});
}

} // namespace brellin::test
