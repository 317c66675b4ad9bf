#pragma once

#include <QObject>
#include <QPointer>

#include <deque>
#include <functional>
#include <utility>
#include <vector>

namespace brellin {

/// An observable property of a model. Anyone may read and observe it, only its model may write it (see `Model`). Main
/// thread only.
///
/// Observers are notified of changes only, not of equal values. A write from inside an observer is queued until all
/// observers have seen the previous value, so that all of them see the same sequence.
template <class T>
class Published {
public:
    Published() = default;
    explicit Published(T initial) : m_value(std::move(initial)) {}
    Published(const Published &) = delete;
    Published &operator=(const Published &) = delete;

    const T &get() const { return m_value; }

    /// Calls `heard` with every new value until `receiver` is destroyed.
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
        // An observer added meanwhile has already read the value. The vector may reallocate, so copy each observer.
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

/// Base of classes with published properties: `class Pins : public Model<Pins>`. Only the declaring class can write
/// them.
template <class Owner>
class Model : public QObject {
public:
    /// Hides brellin::Published inside the owner; the same with write access for Model.
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

private:
    friend Owner; // only the class named can be made of this base
    explicit Model(QObject *parent = nullptr) : QObject(parent) {}
};

} // namespace brellin
