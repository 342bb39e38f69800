#include "filestate.h"

#include "descriptor.h"

#include <QCryptographicHash>
#include <QFile>

#include <sys/stat.h>

#include <limits>

namespace vellix {
namespace gesture {

// Only tells states apart. A stronger one takes several times as long, half of a save's own work.
static constexpr auto method = QCryptographicHash::Sha1;

FileState FileState::at(const QString &path)
{
    const Descriptor file(openFile(QFile::encodeName(path).toStdString(), O_RDONLY | O_NONBLOCK));
    if (!file.isOpen())
        return FileState(errno == ENOENT || errno == ENOTDIR ? Absent : errno == ENXIO ? NoFile : Unreadable);
    return of(file);
}

FileState FileState::of(int descriptor)
{
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0)
        return FileState(Unreadable);
    if (!S_ISREG(status.st_mode))
        return FileState(NoFile);
    // QByteArray cannot hold more.
    if (status.st_size > std::numeric_limits<int>::max())
        return FileState(Unreadable);

    FileState state(Regular);
    QCryptographicHash hash(method);
    char bytes[16 * 1024];
    for (;;) {
        const ssize_t count =
                untilNotInterrupted([&] { return ::pread(descriptor, bytes, sizeof bytes, state.m_size); });
        if (count < 0)
            return FileState(Unreadable);
        if (count == 0)
            break;
        hash.addData(bytes, static_cast<int>(count));
        state.m_size += count;
    }
    state.m_hash = hash.result();
    return state;
}

FileState FileState::with(const QByteArray &bytes)
{
    FileState state(Regular);
    state.m_size = bytes.size();
    state.m_hash = QCryptographicHash::hash(bytes, method);
    return state;
}

bool FileState::operator==(const FileState &other) const
{
    return m_kind != Unknown && m_kind == other.m_kind && m_size == other.m_size && m_hash == other.m_hash;
}

}
}
