#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QSocketNotifier>

#include <cstdint>
#include <memory>

namespace vellix {
namespace components {

/// Receives the events of its watches. `watch` is the descriptor from Inotify::add; events on the watched path itself
/// have an empty name.
class InotifyListener : public QObject
{
public:
    using QObject::QObject;

    /// Notes the event, and must not react yet.
    virtual void note(int watch, const QByteArray &name, std::uint32_t mask) = 0;
    /// Reacts to the events noted since the last call. Work that may delete listeners or run an event loop waits for
    /// the event loop's next turn.
    virtual void react() = 0;
};

/// The process's one inotify descriptor, shared by all listeners and open while there is one. It also follows the mount
/// table: a new mount sends no event, so every listener gets it as lost events (IN_Q_OVERFLOW).
class Inotify : public QObject
{
public:
    static Inotify *acquire();
    static void release();

    /// Watches a path for a listener; returns a negative value (and errno) on failure.
    int add(InotifyListener *listener, const QByteArray &path, std::uint32_t mask);
    void remove(InotifyListener *listener, int watch);

private:
    Inotify();
    ~Inotify() override;

    void followMounts();
    void noteMounts();
    void readEvents();
    QList<InotifyListener *> noteEvents(const char *begin, const char *end);
    QList<InotifyListener *> everybody() const;

    static Inotify *s_instance;
    static int s_users;

    int m_mountAlarm; // polled by the event loop: it wakes up
    int m_mounts;     // polled by noteMounts() alone
    std::unique_ptr<QSocketNotifier> m_alarm;
    int m_descriptor;
    QSocketNotifier m_notifier;
    QHash<int, QList<InotifyListener *>> m_listeners;
};

}
}
