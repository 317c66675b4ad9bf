#pragma once

#include <QObject>
#include <QPointer>

#include <deque>
#include <functional>
#include <utility>
#include <vector>

namespace brellin {

/// A property of a model that anyone may read and watch, and only its model may write (see `Model`). Lives on the main
/// thread.
///
/// Observers hear of changes only: writing an equal value is silent. A write from within an observer waits until all have
/// heard of the one before, so that everybody sees the same sequence of values.
template <class T>
class Published {
public:
    Published() = default;
    explicit Published(T initial) : m_value(std::move(initial)) {}
    Published(const Published &) = delete;
    Published &operator=(const Published &) = delete;

    const T &get() const { return m_value; }

    /// Calls `heard` with every new value for as long as `receiver` lives.
    void observe(QObject *receiver, std::function<void(const T &)> heard)
    {
        m_observers.push_back({receiver, std::move(heard)});
    }

protected:
    void write(T value)
    {
        m_waiting.push_back(std::move(value));
        if (m_telling)
            return;
        m_telling = true;
        while (!m_waiting.empty()) {
            T next = std::move(m_waiting.front());
            m_waiting.pop_front();
            if (next == m_value)
                continue;
            m_value = std::move(next);
            tell();
        }
        m_telling = false;
    }

private:
    struct Observer {
        QPointer<QObject> receiver;
        std::function<void(const T &)> heard;
    };

    void tell()
    {
        std::erase_if(m_observers, [](const Observer &one) { return one.receiver.isNull(); });
        // Observers may come while telling (and then have seen the value); the list may move under our feet.
        const std::size_t count = m_observers.size();
        for (std::size_t i = 0; i < count; ++i) {
            const Observer observer = m_observers[i];
            if (observer.receiver)
                observer.heard(m_value);
        }
    }

    T m_value{};
    std::vector<Observer> m_observers;
    std::deque<T> m_waiting;
    bool m_telling = false;
};

/// What owns published properties: `class Pins : public Model<Pins>`. Only the class itself writes those that it declares.
template <class Owner>
class Model : public QObject {
public:
    using QObject::QObject;

    /// Hides the outer one in the owner: the same, with a writer.
    template <class T>
    class Published : public brellin::Published<T> {
    public:
        using brellin::Published<T>::Published;

    private:
        friend class Model;
        using brellin::Published<T>::write;
    };

protected:
    template <class T>
    static void publish(Published<T> &property, T value)
    {
        property.write(std::move(value));
    }
};

} // namespace brellin
