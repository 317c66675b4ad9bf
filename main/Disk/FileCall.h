#pragma once

#include "Base/Mailbox.h"
#include "Base/OpenWork.h"
#include "Disk/MountWorkers.h"

#include <QTimer>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

namespace brellin {

/// A file system call on a worker of its mount, for a main-thread object that needs the result.
///
/// For a local volume `start` waits up to the workers' patience, so that a fast answer shows without a flash. Exactly
/// one of `finished` and `notAnswering` is called on the main thread, possibly within `start`; neither if the call was
/// dropped, replaced or destroyed. The work must not capture its owner; it should poll the cancel flag.
template <class T>
class FileCall {
public:
    enum class Patience {
        Moment, ///< wait for a local volume, up to the workers' patience
        None
    };
    struct Request {
        Location where; ///< selects the mount
        Patience patience = Patience::Moment;
        MountWorkers::Turn turn = MountWorkers::Turn::OfMount;
    };

    FileCall() = default;
    ~FileCall() { drop(); }
    FileCall(const FileCall &) = delete;
    FileCall &operator=(const FileCall &) = delete;

    bool running() const { return m_link != nullptr; }

    void start(MountWorkers &workers, const Request &request, std::function<T(const JobControl &)> work,
               std::function<void(T)> finished, std::function<void()> notAnswering)
    {
        drop();
        const bool inTurn = request.turn == MountWorkers::Turn::OfMount;
        if (inTurn && !workers.answers(request.where)) {
            notAnswering();
            return;
        }
        const auto link = std::make_shared<Link>();
        m_link = link;
        workers.run(
            request.where, request.turn,
            [open = OpenWork::begin({link, &link->control}), link, work = std::move(work)] { link->run(work); });
        const bool local = workers.isLocal(request.where);
        if (local && request.patience == Patience::Moment && link->wait(workers.patience())) {
            m_link.reset();
            finished(std::move(*link->result));
            return;
        }
        expect(link, std::move(finished));
        if (inTurn && !local)
            giveUpAfter(workers, request.where, std::move(notAnswering));
    }

    /// Cancels the work; its result is discarded.
    void drop()
    {
        if (!m_link)
            return;
        m_link->control.cancel();
        m_link->leave();
        m_link.reset();
        release();
    }

private:
    struct Link {
        JobControl control;
        std::mutex mutex;
        std::condition_variable ready;
        std::optional<T> result;
        Mailbox *receiver = nullptr; ///< null while nobody waits for the result
        std::function<void()> arrived;

        void run(const std::function<T(const JobControl &)> &work)
        {
            T value = work(control);
            const std::scoped_lock lock(mutex);
            result.emplace(std::move(value));
            if (receiver)
                post();
            ready.notify_all();
        }
        /// Detaches the receiver; false if that was done before.
        bool leave()
        {
            const std::scoped_lock lock(mutex);
            return std::exchange(receiver, nullptr) != nullptr;
        }
        void post() { receiver->post(arrived); }
        bool wait(std::chrono::milliseconds patience)
        {
            std::unique_lock lock(mutex);
            return ready.wait_for(lock, patience, [this] { return result.has_value(); });
        }
    };

    void expect(const std::shared_ptr<Link> &link, std::function<void(T)> finished)
    {
        m_receiver = std::make_unique<Mailbox>();
        const std::scoped_lock lock(link->mutex);
        link->receiver = m_receiver.get();
        link->arrived = [this, waiting = std::weak_ptr<Link>(link), finished = std::move(finished)] {
            const std::shared_ptr<Link> done = waiting.lock();
            if (!done || !done->leave())
                return;
            const std::function<void(T)> tell = finished;
            m_link.reset();
            release();
            tell(std::move(*done->result));
        };
        if (link->result)
            link->post();
    }

    void giveUpAfter(MountWorkers &workers, const Location &where, std::function<void()> notAnswering)
    {
        const std::weak_ptr<Link> waiting = m_link;
        QTimer::singleShot(workers.timeOut(), m_receiver.get(),
                           [this, waiting, where, &workers, notAnswering = std::move(notAnswering)] {
                               const std::shared_ptr<Link> link = waiting.lock();
                               if (!link || !link->leave())
                                   return;
                               workers.giveUp(where);
                               link->control.cancel();
                               const std::function<void()> tell = notAnswering;
                               m_link.reset();
                               release();
                               tell();
                           });
    }

    /// Deletes the receiver later, since its own event may be running. Pending events find that it has left.
    void release()
    {
        if (m_receiver)
            m_receiver.release()->deleteLater();
    }

    std::shared_ptr<Link> m_link;
    std::unique_ptr<Mailbox> m_receiver; ///< lives on the main thread; deleting it drops pending events
};

} // namespace brellin
