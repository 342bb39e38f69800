#include "inotify.h"

#include <QPointer>

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

Inotify::Inotify()
    : m_descriptor(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)), m_notifier(m_descriptor, QSocketNotifier::Read)
{
    m_notifier.setEnabled(m_descriptor >= 0);
    connect(&m_notifier, &QSocketNotifier::activated, this, &Inotify::readEvents);
}

Inotify::~Inotify()
{
    m_notifier.setEnabled(false);
    if (m_descriptor >= 0)
        close(m_descriptor);
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

void Inotify::readEvents()
{
    alignas(inotify_event) char buffer[16 * 1024];
    const QPointer<Inotify> alive(this);
    while (alive) {
        const ssize_t size = read(m_descriptor, buffer, sizeof buffer);
        if (size < 0 && errno == EINTR)
            continue;
        if (size <= 0)
            return;

        QList<QPointer<InotifyListener>> noted;
        const QList<InotifyListener *> told = noteEvents(buffer, buffer + size);
        for (InotifyListener *listener : told)
            noted.append(listener);
        for (const QPointer<InotifyListener> &listener : qAsConst(noted)) {
            if (listener)
                listener->react();
        }
    }
}

QList<InotifyListener *> Inotify::noteEvents(const char *begin, const char *end)
{
    QList<InotifyListener *> noted;
    for (const char *at = begin; at < end;) {
        const auto *event = reinterpret_cast<const inotify_event *>(at);
        at += sizeof(inotify_event) + event->len;

        // An overflow has no watch: whatever was lost concerns everybody.
        const bool overflow = event->mask & IN_Q_OVERFLOW;
        QList<InotifyListener *> listeners = m_listeners.value(event->wd);
        if (overflow) {
            for (const QList<InotifyListener *> &some : qAsConst(m_listeners))
                listeners += some;
        }
        const QByteArray name = event->len ? QByteArray(event->name) : QByteArray();
        for (InotifyListener *listener : qAsConst(listeners)) {
            listener->note(event->wd, name, event->mask);
            if (!noted.contains(listener))
                noted.append(listener);
        }
        if (event->mask & IN_IGNORED)
            m_listeners.remove(event->wd);
    }
    return noted;
}

}
}
