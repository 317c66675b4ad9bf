#pragma once

#include "Base/OpenWork.h"
#include "Base/ThreadMarks.h"

#include <QRunnable>
#include <QThreadPool>

#include <functional>
#include <memory>
#include <utility>

namespace brellin {

/// Work queued to a thread pool; registered as open until everything it captures is destroyed.
class PoolWork final : public QRunnable {
public:
    static void start(QThreadPool &pool, std::function<void()> work, std::shared_ptr<JobControl> control)
    {
        auto *const made = new PoolWork(std::move(work), std::move(control));
        markHandedOver(made);
        pool.start(made);
    }

    void run() override
    {
        markTakenOver(this);
        m_work();
    }

private:
    PoolWork(std::function<void()> work, std::shared_ptr<JobControl> control)
        : m_open(OpenWork::begin(std::move(control)))
        , m_work(std::move(work))
    {
    }

    const OpenWork::Token m_open; ///< destroyed last
    const std::function<void()> m_work;
};

} // namespace brellin
