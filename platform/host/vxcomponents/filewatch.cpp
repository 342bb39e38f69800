#include "inotify.h"
#include "openatonce.h"

#include <vellix/platform/vxcomponents.h>

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QSet>
#include <QTimer>

#include <limits.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace vellix {
namespace components {

// A directory reports created and removed entries, the file itself reports writes. Directories do not report attributes
// of entries: for that, the kernel would mark every entry that it knows, half a millisecond in a large directory.
static constexpr std::uint32_t directoryEvents =
        IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF;
static constexpr std::uint32_t fileEvents = IN_MODIFY | IN_CLOSE_WRITE | IN_ATTRIB;

// Milliseconds between looks at a file that is being written; a finished one is read at once.
static constexpr int unfinishedDelay = 50;
// If the kernel refuses a watch (its limits are per user) or access to a directory, we poll.
static constexpr int pollInterval = 2000;
static constexpr int maxLinks = 40;

// The errors of a path that leads to nothing; a name that is too long can never exist.
static bool isAbsence(int error)
{
    return error == ENOENT || error == ENOTDIR || error == ENAMETOOLONG;
}

static QByteArray contentOf(const QByteArray &path)
{
    const int descriptor = openAtOnce(path);
    if (descriptor < 0)
        return isAbsence(errno) ? QByteArray("absent") : QByteArray("unreadable");

    struct stat status;
    QFile file;
    QCryptographicHash hash(QCryptographicHash::Sha1);
    const bool regular = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    const bool known = regular && file.open(descriptor, QIODevice::ReadOnly) && hash.addData(&file);
    close(descriptor);
    return known ? hash.result() : QByteArray("unreadable");
}

static QList<QByteArray> segmentsOf(const QByteArray &path)
{
    QList<QByteArray> segments = path.split('/');
    segments.removeAll(QByteArray());
    segments.removeAll(QByteArray("."));
    return segments;
}

static QByteArray linkTarget(const QByteArray &path)
{
    char target[PATH_MAX];
    const ssize_t size = readlink(path.constData(), target, sizeof target);
    return size > 0 ? QByteArray(target, static_cast<int>(size)) : QByteArray();
}

class FileWatch : public InotifyListener
{
public:
    FileWatch(const QByteArray &path, const std::function<void()> &callback, QObject *context)
        : InotifyListener(context), m_path(path), m_callback(callback), m_inotify(Inotify::acquire())
    {
        m_later.setSingleShot(true);
        connect(&m_later, &QTimer::timeout, this, &FileWatch::check);
        m_settling.setSingleShot(true);
        connect(&m_settling, &QTimer::timeout, this, &FileWatch::settle);
        connect(&m_poll, &QTimer::timeout, this, &FileWatch::check);
        arm();
        m_content = contentOf(m_path);
    }

    ~FileWatch() override
    {
        disarm(m_armed);
        Inotify::release();
    }

    void note(int watch, const QByteArray &name, std::uint32_t mask) override
    {
        const bool ours = mask & IN_Q_OVERFLOW || name.isEmpty() || m_armed.value(watch).contains(name);
        if (!ours)
            return;
        // A writer ends with a close or a rename; before that the file may be half written.
        if (mask & (IN_MODIFY | IN_CREATE))
            m_unfinished = true;
        else
            m_finished = true;
    }

    void react() override
    {
        const bool finished = m_finished;
        const bool unfinished = m_unfinished;
        m_finished = m_unfinished = false;
        if (finished) {
            m_later.start(0); // a callback that runs an event loop must not hold up other watches
        } else if (unfinished) {
            arm();
            if (!m_later.isActive())
                m_later.start(unfinishedDelay);
        }
    }

private:
    using Armed = QHash<int, QSet<QByteArray>>;

    // Reports at once. The event loop renews the watches, also one that the callback runs.
    void check()
    {
        m_later.stop();
        m_settling.start(0);
        compare();
    }

    // A second look finds changes from before the watches were renewed.
    void settle()
    {
        arm();
        compare();
    }

    void compare()
    {
        const QByteArray content = contentOf(m_path);
        if (content == m_content)
            return;
        m_content = content;
        const std::function<void()> callback = m_callback; // the call may delete this watch and its captures
        if (callback)
            callback();
    }

    // Watches every directory on the way to the file, links included, from the root down. Each is watched before it is
    // read, so every later change leaves an event.
    void arm()
    {
        Armed armed;
        m_complete = true;
        QList<QByteArray> rest = segmentsOf(m_path);
        QByteArray directory = "/";
        struct stat status = {};
        for (int links = 0; !rest.isEmpty() && links <= maxLinks;) {
            const QByteArray name = rest.takeFirst();
            watch(armed, directory, directoryEvents | IN_ONLYDIR, name);
            const QByteArray entry = directory + name;
            if (lstat(entry.constData(), &status) != 0) {
                m_complete = m_complete && isAbsence(errno);
                status = {};
                break;
            }
            if (S_ISLNK(status.st_mode)) {
                const QByteArray target = linkTarget(entry);
                rest = segmentsOf(target) + rest;
                if (target.startsWith('/'))
                    directory = "/";
                ++links;
            } else if (rest.isEmpty()) {
                directory = entry;
            } else {
                directory = entry + '/';
            }
        }
        if (S_ISREG(status.st_mode))
            watch(armed, directory, fileEvents | IN_DONT_FOLLOW, QByteArray());

        for (auto it = armed.cbegin(); it != armed.cend(); ++it)
            m_armed.remove(it.key());
        disarm(m_armed);
        m_armed = armed;
        if (m_complete)
            m_poll.stop();
        else if (!m_poll.isActive())
            m_poll.start(pollInterval);
    }

    void watch(Armed &armed, const QByteArray &path, std::uint32_t mask, const QByteArray &name)
    {
        const int descriptor = m_inotify->add(this, path, mask);
        if (descriptor >= 0)
            armed[descriptor].insert(name);
        else if (!isAbsence(errno))
            m_complete = false;
    }

    void disarm(const Armed &armed)
    {
        for (auto it = armed.cbegin(); it != armed.cend(); ++it)
            m_inotify->remove(this, it.key());
    }

    const QByteArray m_path;
    const std::function<void()> m_callback;
    Inotify *const m_inotify;
    QTimer m_later;
    QTimer m_settling;
    QTimer m_poll;
    Armed m_armed; // the names that matter in each watched directory
    QByteArray m_content;
    bool m_complete = true;
    bool m_finished = false;
    bool m_unfinished = false;
};

namespace fs {

QObject *__watchFileChange(const QString &path, QObject *context, const std::function<void()> &callback)
{
    const QString absolute = path.startsWith(QLatin1Char('/')) ? path : QDir::current().absoluteFilePath(path);
    return new FileWatch(QFile::encodeName(absolute), callback, context);
}

}

}
}
