#include "savelock.h"

#include "atomicfile.h"

#include <QFile>

#include <sys/file.h>

#include <ctime>

namespace vellix {
namespace gesture {

static constexpr int attempts = 200;
static constexpr long nanosecondsBetween = 5'000'000;

SaveLock::SaveLock(const QString &file)
    : m_directory(openFile(directoryOf(QFile::encodeName(file).toStdString()), O_RDONLY | O_DIRECTORY))
{
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const bool busy = m_directory.isOpen() && ::flock(m_directory, LOCK_EX | LOCK_NB) != 0
                && (errno == EWOULDBLOCK || errno == EINTR);
        if (!busy)
            return;
        const timespec pause{0, nanosecondsBetween};
        ::nanosleep(&pause, nullptr);
    }
}

}
}
