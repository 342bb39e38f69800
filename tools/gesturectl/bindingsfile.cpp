#include "bindingsfile.h"

#include <gesture_api/gestureservice.h>

#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <thread>

using namespace vellix;
using namespace vellix::gesture;

namespace gesturectl {

static const std::chrono::seconds longestWait(5);
static const std::chrono::milliseconds betweenTries(20);

// Whether another process keeps the lock. On a file system without locks, no process does.
static bool isLockedByAnother(int descriptor)
{
    const auto end = std::chrono::steady_clock::now() + longestWait;
    while (flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR)
            return false;
        if (std::chrono::steady_clock::now() >= end)
            return true;
        std::this_thread::sleep_for(betweenTries);
    }
    return false;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

static QString nameOf(qint64 process)
{
    QByteArray name = contentOf(QStringLiteral("/proc/%1/comm").arg(process));
    if (name.endsWith('\n'))
        name.chop(1);
    const QString number = QStringLiteral("process %1").arg(process);
    return name.isEmpty() ? number : QString::fromUtf8(name) + QStringLiteral(" (") + number + QLatin1Char(')');
}

// As the system lists them: "1: FLOCK ADVISORY WRITE 4711 fe:00:1234 0 EOF"; an arrow marks waiting ones.
static QString holdersOf(int descriptor)
{
    QStringList holders;
    struct stat status = {};
    fstat(descriptor, &status);
    const QByteArray file = QString::asprintf("%02x:%02x:%llu", major(status.st_dev), minor(status.st_dev),
                                              static_cast<unsigned long long>(status.st_ino))
                                    .toLatin1();
    const QByteArrayList locks = contentOf(QStringLiteral("/proc/locks")).split('\n');
    for (const QByteArray &lock : locks) {
        const QByteArrayList fields = lock.simplified().split(' ');
        const qint64 process = fields.value(4).toLongLong();
        if (fields.value(1) == "FLOCK" && fields.value(5) == file && process > 0)
            holders.append(nameOf(process));
    }
    holders.removeDuplicates();
    return holders.isEmpty() ? QStringLiteral("another process, perhaps another gesturectl,")
                             : holders.join(QStringLiteral(", "));
}

BindLock::BindLock(const ApplicationPaths &paths)
    : m_descriptor(open(qPrintable(resolved(paths.defaultPath())), O_RDONLY | O_NONBLOCK | O_CLOEXEC))
{
    if (m_descriptor >= 0 && isLockedByAnother(m_descriptor))
        m_failure = Failure{BadFiles,
                            QStringLiteral("%1: locked by %2 for 5 seconds; nothing was changed, try again")
                                    .arg(resolved(paths.defaultPath()), holdersOf(m_descriptor))};
}

BindLock::~BindLock()
{
    if (m_descriptor >= 0)
        close(m_descriptor);
}

Result<ExitStatus> writeBindings(const ApplicationPaths &paths, const Gestures &gestures, const Bindings &bindings)
{
    Gestures bound;
    for (Gesture *gesture : gestures) {
        if (!bindings.contains(gesture->id()))
            continue;
        gesture->setCurrentAction(gesture->defaultAction());
        bound.append(gesture);
    }
    GestureService service(paths, nullptr, false, GestureService::GestureList([&bound] { return bound; }), false);
    return service.trySave().map([](qint64) { return Success; }).mapLeft([](const QString &reason) {
        return Failure{BadFiles, reason};
    });
}

Result<Bindings> bindingsOfFile(const ApplicationPaths &paths)
{
    if (!paths.currentPathExists())
        return Left(Failure{BadFiles, resolved(paths.currentPath()) + QStringLiteral(": No such file or directory")});
    return bindingsOf(paths);
}

}
