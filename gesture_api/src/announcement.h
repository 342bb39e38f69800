#pragma once

#include <QMetaMethod>
#include <QObject>

#include <forward_list>
#include <type_traits>

namespace vellix {
namespace gesture {

/// An emission under way. A slot may set another value, or destroy the announced object: later listeners get the value
/// at that time, never an old value or a destroyed object.
template <class Value>
class Announcement
{
public:
    Announcement(QObject *sender, const QMetaMethod &signal, const Value &value)
        : m_sender(sender), m_signal(signal.methodIndex()), m_outer(innermost())
    {
        forEach(sender, signal, [&value](Announcement *outer) { outer->say(value); });
        innermost() = this;
        say(value);
        QMetaObject::activate(sender, m_signal, m_arguments); // reads the arguments for each listener
    }
    Announcement(const Announcement &) = delete;
    Announcement &operator=(const Announcement &) = delete;
    ~Announcement() { innermost() = m_outer; }

    static void withdraw(const QObject *sender, const QMetaMethod &signal, const Value &value)
    {
        forEach(sender, signal, [&value](Announcement *announcement) {
            if (announcement->m_values.front() == value)
                announcement->say({});
        });
    }

private:
    static Announcement *&innermost()
    {
        static thread_local Announcement *announcement = nullptr;
        return announcement;
    }

    template <class Function>
    static void forEach(const QObject *sender, const QMetaMethod &signal, const Function &function)
    {
        for (Announcement *each = innermost(); each; each = each->m_outer) {
            if (each->m_sender == sender && each->m_signal == signal.methodIndex())
                function(each);
        }
    }

    void say(const Value &value)
    {
        m_values.push_front(value); // a slot may still refer to the previous one
        m_arguments[1] = &m_values.front();
    }

    const QObject *const m_sender;
    const int m_signal;
    Announcement *const m_outer;
    std::forward_list<Value> m_values;
    void *m_arguments[2] = {};
};

/// Emits a signal of a property that has just been set. A slot may destroy the sender.
template <class Sender, class Value>
void announce(Sender *sender, void (Sender::*signal)(Value), const std::decay_t<Value> &value)
{
    const Announcement<Value> announcement(sender, QMetaMethod::fromSignal(signal), value);
}

/// Later listeners get null in place of an object that is being destroyed.
template <class Sender, class Value>
void withdraw(Sender *sender, void (Sender::*signal)(Value), const std::decay_t<Value> &value)
{
    Announcement<Value>::withdraw(sender, QMetaMethod::fromSignal(signal), value);
}

}
}
