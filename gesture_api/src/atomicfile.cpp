#include "atomicfile.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <string>

namespace vellix {
namespace gesture {

namespace {
class Descriptor
{
public:
    explicit Descriptor(int descriptor) : m_descriptor(descriptor) {}
    ~Descriptor() { close(); }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    bool isOpen() const { return m_descriptor >= 0; }
    operator int() const { return m_descriptor; }

    bool close()
    {
        const int descriptor = m_descriptor;
        m_descriptor = -1;
        // Linux closes the descriptor even when a signal interrupts the call.
        return descriptor < 0 || ::close(descriptor) == 0 || errno == EINTR;
    }

private:
    int m_descriptor;
};
}

template <class Call>
static auto untilNotInterrupted(const Call &call)
{
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

static int openFile(const std::string &path, int flags, mode_t mode = 0)
{
    return untilNotInterrupted([&] { return ::open(path.c_str(), flags | O_CLOEXEC, mode); });
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

static bool sync(int descriptor)
{
    return untilNotInterrupted([&] { return ::fsync(descriptor); }) == 0;
}

// Where the last of a chain of links points to, even when nothing is there yet.
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

static std::string directoryOf(const std::string &path)
{
    const std::string directory = std::filesystem::path(path).parent_path().string();
    return directory.empty() ? "." : directory;
}

static qint64 writeDirectly(int descriptor, const QByteArray &bytes)
{
    struct stat status;
    if (fstat(descriptor, &status) != 0)
        return -1;
    const bool regular = S_ISREG(status.st_mode);
    if (regular && untilNotInterrupted([&] { return ::ftruncate(descriptor, 0); }) != 0)
        return -1;
    return writeAll(descriptor, bytes) && (!regular || sync(descriptor)) ? bytes.size() : -1;
}

static bool syncDirectory(const std::string &directory)
{
    const Descriptor descriptor(openFile(directory, O_RDONLY | O_DIRECTORY));
    return descriptor.isOpen() && sync(descriptor);
}

// A new file beside `target`, opened for writing; its name is set.
static int openBeside(const std::string &target, std::string *name)
{
    const std::string stem = directoryOf(target) + "/.gestures-" + std::to_string(getpid()) + '-';
    for (int attempt = 0;; ++attempt) {
        *name = stem + std::to_string(attempt);
        const int descriptor = openFile(*name, O_WRONLY | O_CREAT | O_EXCL, 0666);
        if (descriptor >= 0 || errno != EEXIST)
            return descriptor;
    }
}

// Owner, mode and access list.
static bool copyPermissions(int from, const struct stat &status, int to)
{
    // Only root can give a file away; for everybody else it is their own already.
    const bool same = status.st_uid == geteuid() && status.st_gid == getegid();
    const bool owned = same || ::fchown(to, status.st_uid, status.st_gid) == 0;
    if (::fchmod(to, owned ? status.st_mode & 07777 : status.st_mode & 0777) != 0)
        return false;

    const char *const name = "system.posix_acl_access";
    char list[4096];
    const ssize_t size = ::fgetxattr(from, name, list, sizeof list);
    return size <= 0 || ::fsetxattr(to, name, list, static_cast<std::size_t>(size), 0) == 0;
}

// What a directory says that only its owner, or nobody, may change it, though a file in it may be written.
static bool isRefusal(int error)
{
    return error == EACCES || error == EPERM || error == EROFS || error == EBUSY;
}

Either<QString, qint64> writeAtomically(const QString &path, const QByteArray &bytes)
{
    if (path.isEmpty())
        return Left(QStringLiteral("No file name specified"));
    const std::string target = followLinks(QFile::encodeName(path).toStdString());

    // The old file says whether it may be written at all; a pipe without a reader must not block.
    Descriptor existing(openFile(target, O_WRONLY | O_NONBLOCK));
    if (!existing.isOpen() && errno != ENOENT)
        return Left(qt_error_string(errno));
    struct stat status = {};
    if (existing.isOpen() && (fstat(existing, &status) != 0 || !S_ISREG(status.st_mode)))
        return Right(writeDirectly(existing, bytes));

    std::string name;
    Descriptor temporary(openBeside(target, &name));
    if (!temporary.isOpen()) {
        if (!existing.isOpen())
            return Left(qt_error_string(errno));
        return Right(isRefusal(errno) ? writeDirectly(existing, bytes) : qint64(-1));
    }

    const bool filled = (!existing.isOpen() || copyPermissions(existing, status, temporary))
            && writeAll(temporary, bytes) && sync(temporary) && temporary.close();
    if (filled && std::rename(name.c_str(), target.c_str()) == 0) {
        existing.close(); // so that the disk hears of the old file's end together with the rename
        return Right(syncDirectory(directoryOf(target)) ? qint64(bytes.size()) : qint64(-1));
    }
    const bool refused = filled && existing.isOpen() && isRefusal(errno);
    ::unlink(name.c_str());
    return Right(refused ? writeDirectly(existing, bytes) : qint64(-1));
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
