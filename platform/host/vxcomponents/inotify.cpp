#include "inotify.h"

#include <QAbstractEventDispatcher>
#include <QSet>

#include <fcntl.h>
#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <cerrno>

namespace vellix {
namespace components {

Inotify *Inotify::s_instance = nullptr;
int Inotify::s_users = 0;

Inotify *Inotify::acquire()
{
    if (!s_instance)
        s_instance = new Inotify;
    ++s_users;
    return s_instance;
}

void Inotify::release()
{
    if (--s_users > 0)
        return;
    delete s_instance;
    s_instance = nullptr;
}

static int openMounts()
{
    return open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC);
}

static void closeIfOpen(int descriptor)
{
    if (descriptor >= 0)
        close(descriptor);
}

Inotify::Inotify()
    : m_mountAlarm(openMounts()), m_mounts(openMounts()), m_descriptor(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)),
      m_notifier(m_descriptor, QSocketNotifier::Read)
{
    m_notifier.setEnabled(m_descriptor >= 0);
    connect(&m_notifier, &QSocketNotifier::activated, this, &Inotify::readEvents);
    if (m_mountAlarm >= 0)
        followMounts();
}

Inotify::~Inotify()
{
    m_alarm.reset(); // before its descriptor
    m_notifier.setEnabled(false);
    closeIfOpen(m_descriptor);
    closeIfOpen(m_mounts);
    closeIfOpen(m_mountAlarm);
}

// Each open file reports a change in one poll only: it neither needs a read nor keeps the event loop awake. If a
// notifier before ours runs another loop, the change that the event loop polled is lost: hence a second file.
void Inotify::followMounts()
{
    m_alarm = std::make_unique<QSocketNotifier>(m_mountAlarm, QSocketNotifier::Exception);
    connect(m_alarm.get(), &QSocketNotifier::activated, this, &Inotify::noteMounts);
    if (const auto *loop = QAbstractEventDispatcher::instance())
        connect(loop, &QAbstractEventDispatcher::awake, this, &Inotify::noteMounts);
}

int Inotify::add(InotifyListener *listener, const QByteArray &path, std::uint32_t mask)
{
    // One descriptor serves every listener of a directory, so a mask only ever grows.
    const int watch = inotify_add_watch(m_descriptor, path.constData(), mask | IN_MASK_ADD);
    if (watch < 0)
        return watch;
    QList<InotifyListener *> &listeners = m_listeners[watch];
    if (!listeners.contains(listener))
        listeners.append(listener);
    return watch;
}

void Inotify::remove(InotifyListener *listener, int watch)
{
    const auto listeners = m_listeners.find(watch);
    if (listeners == m_listeners.end())
        return;
    listeners->removeOne(listener);
    if (!listeners->isEmpty())
        return;
    m_listeners.erase(listeners);
    inotify_rm_watch(m_descriptor, watch);
}

static void react(const QList<InotifyListener *> &noted)
{
    for (InotifyListener *listener : noted)
        listener->react();
}

void Inotify::noteMounts()
{
    pollfd mounts = {m_mounts, POLLPRI, 0};
    if (poll(&mounts, 1, 0) <= 0 || !(mounts.revents & POLLPRI))
        return;
    const QList<InotifyListener *> all = everybody();
    for (InotifyListener *listener : all)
        listener->note(-1, QByteArray(), IN_Q_OVERFLOW);
    react(all);
}

void Inotify::readEvents()
{
    alignas(inotify_event) char buffer[16 * 1024];
    ssize_t size;
    do {
        size = read(m_descriptor, buffer, sizeof buffer);
    } while (size < 0 && errno == EINTR);
    // The remaining events wake the event loop again.
    if (size > 0)
        react(noteEvents(buffer, buffer + size));
}

QList<InotifyListener *> Inotify::noteEvents(const char *begin, const char *end)
{
    QList<InotifyListener *> noted;
    for (const char *at = begin; at < end;) {
        const auto *event = reinterpret_cast<const inotify_event *>(at);
        at += sizeof(inotify_event) + event->len;

        // An overflow has no watch: the lost events may concern every listener.
        const bool overflow = event->mask & IN_Q_OVERFLOW;
        const QList<InotifyListener *> listeners = overflow ? everybody() : m_listeners.value(event->wd);
        const QByteArray name = event->len ? QByteArray(event->name) : QByteArray();
        for (InotifyListener *listener : listeners) {
            listener->note(event->wd, name, event->mask);
            if (!noted.contains(listener))
                noted.append(listener);
        }
        if (event->mask & IN_IGNORED)
            m_listeners.remove(event->wd);
    }
    return noted;
}

QList<InotifyListener *> Inotify::everybody() const
{
    QSet<InotifyListener *> all;
    for (const QList<InotifyListener *> &some : m_listeners)
        all.unite({some.cbegin(), some.cend()});
    return all.values();
}

}
}
