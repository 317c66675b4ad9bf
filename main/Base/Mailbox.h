#pragma once

#include "Base/ThreadMarks.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

#include <functional>
#include <utility>

namespace brellin {

/// Queue for calls from workers to the main thread. Calls still pending on its destruction are dropped.
class Mailbox final : public QObject {
public:
    /// Thread-safe; the caller must make sure that the mailbox exists.
    void post(std::function<void()> call)
    {
        auto *const letter = new Letter(std::move(call));
        markHandedOver(letter);
        QCoreApplication::postEvent(this, letter);
    }

    /// A mailbox that is never destroyed. The first call must be on the main thread.
    static Mailbox &ofMainThread()
    {
        static auto *const only = new Mailbox;
        return *only;
    }

    bool event(QEvent *event) override
    {
        if (event->type() != Letter::kind())
            return QObject::event(event);
        markTakenOver(event);
        static_cast<Letter *>(event)->call();
        return true;
    }

private:
    struct Letter final : QEvent {
        explicit Letter(std::function<void()> wanted) : QEvent(kind()), call(std::move(wanted)) {}
        ~Letter() override { markTakenOver(this); }
        Letter(const Letter &) = delete;
        Letter &operator=(const Letter &) = delete;

        static QEvent::Type kind()
        {
            static const int number = QEvent::registerEventType();
            return static_cast<QEvent::Type>(number);
        }

        const std::function<void()> call;
    };
};

} // namespace brellin
