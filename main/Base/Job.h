#pragma once

#include "Base/Mailbox.h"
#include "Base/PoolWork.h"

#include <QTimer>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace brellin {

/// A piece of long work on a thread pool, held by the main-thread object that wants its result.
///
/// `finished` is called exactly once on the main thread, with whatever the work returned (a cancel is a result like any
/// other); while it works, `sampled` is called ten times a second. A Job that is destroyed cancels its work and calls
/// nothing any more; the work itself ends when it notices, holding nothing of its owner.
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

    /// Refused while it is running: false, and `finished` is never called.
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
        Mailbox *receiver = nullptr; ///< null once the owner has gone
        std::optional<T> result;
    };

    /// On the worker. `job` is only passed on: whether it still lives is known on the main thread alone.
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
        // A sample that is already due must not come after the end.
        m_sampler.reset();
        // This runs inside the receiver's event: it goes once that is over.
        m_receiver.release()->deleteLater();
        // The last act: the owner may start the next job, or go, in it.
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
    std::unique_ptr<Mailbox> m_receiver; ///< lives on the main thread; its death drops what is on the way
    std::function<void(T)> m_finished;
};

} // namespace brellin
