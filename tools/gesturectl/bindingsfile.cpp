#include "bindingsfile.h"

#include <gesture_api/gestureservice.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace vellix;
using namespace vellix::gesture;

namespace gesturectl {

static constexpr int longestWait = 5000; // milliseconds

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

static QString holderOf(const QLockFile &lock)
{
    qint64 process = 0;
    QString host;
    QString program;
    const bool isKnown = lock.getLockInfo(&process, &host, &program);
    return isKnown ? nameOf(process) : QStringLiteral("another process, perhaps another gesturectl,");
}

// The name begins with a dot, so that no program takes it for an application's file.
static QString lockFileOf(const QString &bindings)
{
    return QFileInfo(bindings).path() + QStringLiteral("/.gesturectl.lock");
}

BindLock::BindLock(const ApplicationPaths &paths) : m_file(lockFileOf(resolved(paths.currentPath())))
{
    const QString bindings = resolved(paths.currentPath());
    for (QDir directory = QFileInfo(bindings).dir(); !directory.exists(); directory = QFileInfo(directory.path()).dir())
        m_created.append(directory.path());
    QDir().mkpath(QFileInfo(bindings).path());
    m_file.setStaleLockTime(0); // only the lock of a process that is gone
    if (!m_file.tryLock(longestWait) && m_file.error() == QLockFile::LockFailedError)
        m_failure = Failure{BadFiles,
                            QStringLiteral("%1: locked by %2 for 5 seconds; nothing was changed, try again")
                                    .arg(bindings, holderOf(m_file))};
}

// A change that was refused leaves nothing.
BindLock::~BindLock()
{
    m_file.unlock();
    for (const QString &directory : qAsConst(m_created))
        QDir().rmdir(directory);
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
