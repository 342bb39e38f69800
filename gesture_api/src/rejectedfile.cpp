#include "rejectedfile.h"

#include "descriptor.h"
#include "permissions.h"

#include <QFile>

#include <sys/stat.h>
#include <sys/xattr.h>

namespace vellix {
namespace gesture {

static constexpr int maxRejected = 8;

static Left<SaveFailure> notKept()
{
    return Left(SaveFailure{SaveFailure::Other, QStringLiteral("the rejected file can not be kept beside it")});
}

// A new file, readable by its owner alone; its name is set. EEXIST when there are too many.
static int openRejected(const std::string &path, std::string *name)
{
    for (int number = 1; number <= maxRejected; ++number) {
        *name = path + ".rejected" + (number > 1 ? '.' + std::to_string(number) : std::string());
        const int descriptor = openFile(*name, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW, 0600);
        if (descriptor >= 0 || errno != EEXIST)
            return descriptor;
    }
    errno = EEXIST;
    return -1;
}

// As accessible as the original; where that can not be had, to its new owner alone.
static bool protect(int from, int to)
{
    struct stat status = {};
    if (::fstat(from, &status) != 0)
        return false;
    if (copyPermissions(from, status, to) == 0)
        return true;
    const bool listed = ::fremovexattr(to, "system.posix_acl_access") != 0 && errno != ENODATA && errno != ENOTSUP;
    return !listed && ::fchmod(to, 0600) == 0;
}

static bool copyBytes(int from, int to)
{
    char bytes[16 * 1024];
    for (off_t done = 0;;) {
        const ssize_t count = untilNotInterrupted([&] { return ::pread(from, bytes, sizeof bytes, done); });
        if (count <= 0)
            return count == 0;
        if (!writeAll(to, QByteArray::fromRawData(bytes, static_cast<int>(count))))
            return false;
        done += count;
    }
}

static Either<SaveFailure, bool> copyBeside(const std::string &path, int original, const FileState &state)
{
    std::string name;
    Descriptor copy(openRejected(path, &name));
    if (!copy.isOpen() && errno == EEXIST)
        return Left(SaveFailure{SaveFailure::Other, QStringLiteral("eight rejected files are beside it already")});
    if (!copy.isOpen())
        return notKept();
    const bool copied = protect(original, copy) && copyBytes(original, copy) && FileState::of(copy) == state
            && sync(copy) && copy.close() && syncDirectory(directoryOf(path));
    if (!copied) {
        ::unlink(name.c_str());
        return notKept();
    }
    return Right(true);
}

Either<SaveFailure, bool> keepRejected(const QString &path, const FileState &refused)
{
    const std::string file = QFile::encodeName(path).toStdString();
    const Descriptor writable(openFile(file, O_WRONLY | O_NONBLOCK));
    if (!writable.isOpen() && errno != ENOENT)
        return Left(SaveFailure{SaveFailure::Opening, qt_error_string(errno)});

    const Descriptor original(openFile(file, O_RDONLY | O_NONBLOCK));
    if (!original.isOpen())
        return errno == ENOENT ? Either<SaveFailure, bool>(Right(false)) : notKept();
    const FileState state = FileState::of(original);
    if (state.kind() == FileState::Unreadable)
        return notKept();
    // What could not be read then may be what stands there now.
    const bool unseen = refused.kind() == FileState::Unknown || refused.kind() == FileState::Unreadable;
    if (state.kind() != FileState::Regular || (!unseen && state != refused))
        return Right(false);
    return copyBeside(file, original, state);
}

}
}
