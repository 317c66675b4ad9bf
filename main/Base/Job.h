#pragma once

#include "Base/Mailbox.h"
#include "Base/PoolWork.h"

#include <QTimer>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace brellin {

/// Long-running work on a thread pool, owned by the main-thread object that needs the result.
///
/// `finished` is called exactly once on the main thread with the result of the work, also after a cancel. `sampled` is
/// called ten times a second meanwhile. Destroying the Job cancels the work and drops the callbacks. The worker polls
/// the cancel flag; it must not capture the owner.
template <class T>
class Job {
public:
    Job() = default;
    ~Job() { abandon(); }
    Job(const Job &) = delete;
    Job &operator=(const Job &) = delete;

    bool running() const { return m_link != nullptr; }
    void cancel()
    {
        if (m_link)
            m_link->control.cancel();
    }

    /// Returns false if the job is already running; `finished` is then never called.
    bool start(QThreadPool &pool, std::function<T(JobControl &)> work, std::function<void(T)> finished,
               std::function<void(const JobControl &)> sampled = {})
    {
        if (running())
            return false;
        m_link = std::make_shared<Link>();
        m_finished = std::move(finished);
        m_receiver = std::make_unique<Mailbox>();
        m_link->receiver = m_receiver.get();
        if (sampled)
            startSampling(std::move(sampled));
        PoolWork::start(
            pool, [this, link = m_link, work = std::move(work)] { run(this, link, work); },
            std::shared_ptr<JobControl>(m_link, &m_link->control));
        return true;
    }

private:
    struct Link {
        JobControl control;
        std::mutex mutex;
        Mailbox *receiver = nullptr; ///< null once the owner is destroyed
        std::optional<T> result;
    };

    /// Runs on the worker. Only passes `job` on: whether it still exists is known on the main thread alone.
    static void run(Job *job, const std::shared_ptr<Link> &link, const std::function<T(JobControl &)> &work)
    {
        T result = work(link->control);
        const std::scoped_lock lock(link->mutex);
        link->result.emplace(std::move(result));
        if (link->receiver)
            link->receiver->post([job] { job->finish(); });
    }

    void startSampling(std::function<void(const JobControl &)> sampled)
    {
        m_sampler = std::make_unique<QTimer>();
        QObject::connect(m_sampler.get(), &QTimer::timeout, m_receiver.get(),
                         [link = m_link, sampled = std::move(sampled)] { sampled(link->control); });
        m_sampler->start(100);
    }

    void finish()
    {
        const std::shared_ptr<Link> link = std::move(m_link);
        const std::function<void(T)> finished = std::move(m_finished);
        // No pending sample may arrive after the end.
        m_sampler.reset();
        // We are inside the receiver's event handler, so delete it later.
        m_receiver.release()->deleteLater();
        // Must be last: the callback may start the next job or destroy this one.
        finished(std::move(*link->result));
    }

    void abandon()
    {
        if (!m_link)
            return;
        m_link->control.cancel();
        const std::scoped_lock lock(m_link->mutex);
        m_link->receiver = nullptr;
    }

    std::shared_ptr<Link> m_link;
    std::unique_ptr<QTimer> m_sampler;
    std::unique_ptr<Mailbox> m_receiver; ///< lives on the main thread; its destruction drops pending calls
    std::function<void(T)> m_finished;
};

} // namespace brellin
