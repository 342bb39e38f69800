#include "atomicfile.h"

#include "descriptor.h"
#include "permissions.h"

#include <QFile>

#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <charconv>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <string_view>

namespace vellix {
namespace gesture {

using Written = Either<SaveFailure, qint64>;

// With the system's message for the error of the last call.
static Left<SaveFailure> failed(SaveFailure::Step step)
{
    return Left(SaveFailure{step, qt_error_string(errno)});
}

QString SaveFailure::message(const QString &path) const
{
    switch (step) {
    case Opening:
        return QStringLiteral("can not open file: ") + reason + QStringLiteral(" (path: ") + path + QLatin1Char(')');
    case Writing:
        return QStringLiteral("can not write file: ") + reason + QStringLiteral(" (path: ") + path + QLatin1Char(')');
    case Other: break;
    }
    return reason + QStringLiteral(" (path: ") + path + QLatin1Char(')');
}

static bool writeAll(int descriptor, const QByteArray &bytes)
{
    for (qint64 done = 0; done < bytes.size();) {
        const ssize_t count = untilNotInterrupted([&] {
            return ::write(descriptor, bytes.constData() + done, static_cast<std::size_t>(bytes.size() - done));
        });
        if (count <= 0)
            return false;
        done += count;
    }
    return true;
}

// The end of a chain of links, even when nothing exists there yet.
static std::string followLinks(std::string path)
{
    std::error_code noLink;
    for (int links = 0; links < 40; ++links) {
        const std::filesystem::path target = std::filesystem::read_symlink(path, noLink);
        if (noLink)
            break;
        path = (std::filesystem::path(path).parent_path() / target).string();
    }
    return path;
}

std::string directoryOf(const std::string &path)
{
    const std::string directory = std::filesystem::path(path).parent_path().string();
    return directory.empty() ? "." : directory;
}

// Reserves space for all bytes, so that overwriting the old ones does not stop half way. The old ones stay.
static bool reserve(int descriptor, qint64 oldSize, const QByteArray &bytes)
{
    if (bytes.isEmpty() || untilNotInterrupted([&] { return ::fallocate(descriptor, 0, 0, bytes.size()); }) == 0)
        return true;
    // If the file system cannot reserve, write the part beyond the old bytes first.
    const bool unknown = errno == EOPNOTSUPP || errno == ENOSYS;
    if (unknown && ::lseek(descriptor, oldSize, SEEK_SET) == oldSize
        && writeAll(descriptor, bytes.mid(static_cast<int>(qMin<qint64>(oldSize, bytes.size())))))
        return true;
    const int error = errno;
    if (::ftruncate(descriptor, oldSize) == 0)
        ::fsync(descriptor);
    errno = error;
    return false;
}

static bool overwrite(int descriptor, qint64 oldSize, const QByteArray &bytes)
{
    return reserve(descriptor, oldSize, bytes) && ::lseek(descriptor, 0, SEEK_SET) == 0 && writeAll(descriptor, bytes)
            && untilNotInterrupted([&] { return ::ftruncate(descriptor, bytes.size()); }) == 0 && sync(descriptor);
}

static Written writeDirectly(int descriptor, const struct stat &status, const QByteArray &bytes)
{
    const bool done =
            S_ISREG(status.st_mode) ? overwrite(descriptor, status.st_size, bytes) : writeAll(descriptor, bytes);
    return done ? Written(Right<qint64>(bytes.size())) : failed(SaveFailure::Writing);
}

static bool syncDirectory(const std::string &directory)
{
    const Descriptor descriptor(openFile(directory, O_RDONLY | O_DIRECTORY));
    return descriptor.isOpen() && sync(descriptor);
}

// A plain constant: a save at the process's end still needs it.
static constexpr std::string_view temporaryPrefix = ".gestures-";

// The process that made a temporary file of this name; 0 for other names.
static pid_t makerOf(const std::string &name)
{
    if (name.compare(0, temporaryPrefix.size(), temporaryPrefix) != 0)
        return 0;
    const char *const end = name.data() + name.size();
    pid_t process = 0;
    unsigned attempt = 0;
    const auto dash = std::from_chars(name.data() + temporaryPrefix.size(), end, process);
    if (dash.ec != std::errc() || dash.ptr == end || *dash.ptr != '-' || process <= 0)
        return 0;
    const auto rest = std::from_chars(dash.ptr + 1, end, attempt);
    return rest.ec == std::errc() && rest.ptr == end ? process : 0;
}

static bool isRegular(int descriptor)
{
    struct stat status = {};
    return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

// Removes temporary files of killed processes. A process elsewhere may have the same number: its lock shows that.
static void removeStrays(const std::string &directory)
{
    std::error_code error;
    std::filesystem::directory_iterator entry(directory, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        const pid_t maker = makerOf(entry->path().filename().string());
        if (maker == 0 || (maker != ::getpid() && (::kill(maker, 0) == 0 || errno != ESRCH)))
            continue;
        const Descriptor stray(openFile(entry->path().string(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK));
        if (stray.isOpen() && isRegular(stray) && ::flock(stray, LOCK_EX | LOCK_NB) == 0)
            ::unlink(entry->path().c_str());
    }
}

// Opens a new file beside `target` for writing and sets its name.
static int openBeside(const std::string &target, mode_t mode, std::string *name)
{
    const std::string stem =
            directoryOf(target) + '/' + std::string(temporaryPrefix) + std::to_string(::getpid()) + '-';
    for (int attempt = 0;; ++attempt) {
        *name = stem + std::to_string(attempt);
        const int descriptor = openFile(*name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, mode);
        if (descriptor >= 0)
            ::flock(descriptor, LOCK_EX | LOCK_NB);
        if (descriptor >= 0 || errno != EEXIST)
            return descriptor;
    }
}

// Files in such a directory cannot be renamed or removed, so no temporary file can be used.
static bool isAppendOnly(const std::string &directory)
{
    struct statx status = {};
    return ::statx(AT_FDCWD, directory.c_str(), 0, 0, &status) == 0 && (status.stx_attributes & STATX_ATTR_APPEND) != 0;
}

static Written writeNew(const std::string &target, const QByteArray &bytes)
{
    const Descriptor file(openFile(target, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0666));
    if (!file.isOpen())
        return failed(SaveFailure::Opening);
    if (!writeAll(file, bytes) || !sync(file) || !syncDirectory(directoryOf(target)))
        return failed(SaveFailure::Writing);
    return Right<qint64>(bytes.size());
}

// Returns 0 or the error. The file stays private until it is as accessible as the old one.
static int fill(Descriptor *temporary, const QByteArray &bytes, int existing, const struct stat &status)
{
    if (!writeAll(*temporary, bytes))
        return errno;
    if (existing >= 0) {
        if (const int error = copyPermissions(existing, status, *temporary))
            return error;
    }
    return sync(*temporary) && temporary->close() ? 0 : errno;
}

static Written replace(const std::string &target, const QByteArray &bytes, Descriptor *existing,
                       const struct stat &status)
{
    std::string name;
    Descriptor temporary(openBeside(target, existing->isOpen() ? 0600 : 0666, &name));
    const bool made = temporary.isOpen();
    int error = made ? fill(&temporary, bytes, *existing, status) : errno;
    if (error == 0 && std::rename(name.c_str(), target.c_str()) == 0) {
        existing->close(); // so that the old file is freed together with the rename
        return syncDirectory(directoryOf(target)) ? Written(Right<qint64>(bytes.size())) : failed(SaveFailure::Writing);
    }
    error = error == 0 ? errno : error;
    if (made)
        ::unlink(name.c_str());
    if (existing->isOpen() && isRefusal(error))
        return writeDirectly(*existing, status, bytes);
    errno = error;
    return failed(made || existing->isOpen() ? SaveFailure::Writing : SaveFailure::Opening);
}

Either<SaveFailure, qint64> writeAtomically(const QString &path, const QByteArray &bytes)
{
    if (path.isEmpty())
        return Left(SaveFailure{SaveFailure::Opening, QStringLiteral("No file name specified")});
    const std::string target = followLinks(QFile::encodeName(path).toStdString());

    // The old file shows whether it may be written at all; a pipe without a reader must not block.
    Descriptor existing(openFile(target, O_WRONLY | O_NONBLOCK));
    if (!existing.isOpen() && errno != ENOENT)
        return failed(SaveFailure::Opening);
    struct stat status = {};
    if (existing.isOpen() && ::fstat(existing, &status) != 0)
        return failed(SaveFailure::Writing);
    if (existing.isOpen() && !S_ISREG(status.st_mode))
        return writeDirectly(existing, status, bytes);

    const std::string directory = directoryOf(target);
    if (isAppendOnly(directory))
        return existing.isOpen() ? writeDirectly(existing, status, bytes) : writeNew(target, bytes);
    removeStrays(directory);
    return replace(target, bytes, &existing, status);
}

// As accessible as the original; if that is impossible, for its new owner only.
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

int copyToNew(int original, const QString &path, const std::function<bool(int)> &isGood)
{
    const std::string name = QFile::encodeName(path).toStdString();
    Descriptor copy(openFile(name, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW, 0600));
    if (!copy.isOpen())
        return errno;
    if (protect(original, copy) && copyBytes(original, copy) && isGood(copy) && sync(copy) && copy.close()
        && syncDirectory(directoryOf(name)))
        return 0;
    const int error = errno == 0 || errno == EEXIST ? EIO : errno;
    ::unlink(name.c_str());
    return error;
}

static void makeDirectories(const std::filesystem::path &directory)
{
    std::error_code ignored;
    if (directory.empty() || std::filesystem::exists(directory, ignored))
        return;
    makeDirectories(directory.parent_path());
    if (std::filesystem::create_directory(directory, ignored))
        syncDirectory(directoryOf(directory.string()));
}

void makeDirectoriesFor(const QString &path)
{
    makeDirectories(directoryOf(QFile::encodeName(path).toStdString()));
}

}
}
