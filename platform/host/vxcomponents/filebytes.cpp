#include "filebytes.h"

#include "openatonce.h"

#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

#include <sys/stat.h>
#include <unistd.h>

#include <limits>

namespace vellix {
namespace components {

static FileBytes irregular(bool isDirectory)
{
    return {isDirectory ? FileBytes::Directory : FileBytes::Other, {}, {}};
}

static FileBytes failed(const QString &error)
{
    return {FileBytes::Regular, error, {}};
}

// An empty name, or a Qt resource.
static FileBytes readWithQt(const QString &path)
{
    const QFileInfo info(path);
    if (info.exists() && !info.isFile())
        return irregular(info.isDir());
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return failed(file.errorString());
    const QByteArray bytes = file.readAll();
    return file.error() == QFileDevice::NoError ? FileBytes{FileBytes::Regular, {}, bytes} : failed(file.errorString());
}

// Appends up to so many bytes, fewer at the end of the file. Returns their number, or -1 if there is only an error.
static int append(int descriptor, int size, QByteArray *bytes)
{
    const int before = bytes->size();
    bytes->resize(before + size);
    int count = 0;
    ssize_t result;
    do {
        result = read(descriptor, bytes->data() + before + count, static_cast<std::size_t>(size - count));
        count += static_cast<int>(qMax<ssize_t>(0, result));
    } while ((result > 0 && count < size) || (result < 0 && errno == EINTR));
    bytes->resize(before + count);
    return count == 0 && result < 0 ? -1 : count;
}

static FileBytes readRegular(int descriptor, off_t size)
{
    constexpr int chunk = 16384;
    constexpr off_t most = std::numeric_limits<int>::max() - chunk;
    FileBytes file;
    if (size >= most)
        return file; // no QByteArray can hold it
    int count = 0;
    do {
        count = append(descriptor, size > 0 ? static_cast<int>(size) : chunk, &file.bytes);
    } while (size == 0 && count > 0 && file.bytes.size() < most); // the kernel's own files have no size
    return count < 0 ? failed(qt_error_string(errno)) : file;
}

FileBytes readFile(const QString &path)
{
    if (!path.startsWith(QLatin1Char('/')) && !QFileInfo(path).isNativePath())
        return readWithQt(path);
    const QByteArray name = QFile::encodeName(path);
    struct stat status = {};
    if (stat(name.constData(), &status) == 0 && !S_ISREG(status.st_mode))
        return irregular(S_ISDIR(status.st_mode));
    const int descriptor = openAtOnce(name);
    if (descriptor < 0)
        return failed(qt_error_string(errno));
    const auto closeAtEnd = qScopeGuard([descriptor] { close(descriptor); });
    // It may be another kind of file by now.
    if (fstat(descriptor, &status) == 0 && !S_ISREG(status.st_mode))
        return irregular(S_ISDIR(status.st_mode));
    return readRegular(descriptor, status.st_size);
}

}
}
