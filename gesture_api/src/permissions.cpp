#include "permissions.h"

#include <grp.h>
#include <pwd.h>
#include <sys/types.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

namespace vellix {
namespace gesture {

using Bytes = std::vector<char>;

static const char *const accessList = "system.posix_acl_access";

bool isRefusal(int error)
{
    return error == EACCES || error == EPERM || error == EROFS || error == EBUSY || error == ENOTSUP;
}

// Calls `read(buffer, size)` with a buffer that is large enough. Returns 0 or the error.
template <class Read>
static int readWhole(const Read &read, Bytes *bytes)
{
    for (;;) {
        const ssize_t size = read(nullptr, 0);
        if (size <= 0)
            return size == 0 ? 0 : errno;
        bytes->resize(static_cast<std::size_t>(size));
        const ssize_t count = read(bytes->data(), bytes->size());
        if (count >= 0) {
            bytes->resize(static_cast<std::size_t>(count));
            return 0;
        }
        if (errno != ERANGE) // another process made it larger in between
            return errno;
    }
}

static int readAttribute(int file, const char *name, Bytes *value)
{
    return readWhole([&](char *buffer, std::size_t size) { return ::fgetxattr(file, name, buffer, size); }, value);
}

static int writeAttribute(int file, const char *name, const Bytes &value)
{
    return ::fsetxattr(file, name, value.data(), value.size(), 0) == 0 ? 0 : errno;
}

// A new file may inherit a list from its directory: remove it if the old file has none.
static int copyAccessList(int from, int to)
{
    Bytes list;
    const int error = readAttribute(from, accessList, &list);
    if (error == 0)
        return writeAttribute(to, accessList, list);
    if (error != ENODATA && error != ENOTSUP)
        return error;
    const bool none = ::fremovexattr(to, accessList) == 0 || errno == ENODATA || errno == ENOTSUP;
    return none ? 0 : errno;
}

static int copyUserAttributes(int from, int to)
{
    Bytes names;
    const int error =
            readWhole([from](char *buffer, std::size_t size) { return ::flistxattr(from, buffer, size); }, &names);
    if (error != 0)
        return error == ENOTSUP ? 0 : error;
    names.push_back('\0'); // each name ends with a zero, and so does the search for the last
    for (const char *name = names.data(); *name; name += std::strlen(name) + 1) {
        if (std::strncmp(name, "user.", 5) != 0)
            continue;
        Bytes value;
        const int unread = readAttribute(from, name, &value);
        if (const int failed = unread ? unread : writeAttribute(to, name, value))
            return failed;
    }
    return 0;
}

static bool isMember(uid_t user, gid_t group)
{
    const passwd *entry = ::getpwuid(user);
    if (!entry)
        return false;
    int count = 0;
    ::getgrouplist(entry->pw_name, entry->pw_gid, nullptr, &count);
    std::vector<gid_t> groups(static_cast<std::size_t>(count));
    return ::getgrouplist(entry->pw_name, entry->pw_gid, groups.data(), &count) >= 0
            && std::find(groups.cbegin(), groups.cend(), group) != groups.cend();
}

// Whether the owner of a file keeps the same access when the file belongs to another user.
static bool reachesWithoutOwning(int file, const struct stat &status)
{
    Bytes list;
    if (readAttribute(file, accessList, &list) == 0)
        return false; // the group's bits then have another meaning
    const mode_t asOwner = (status.st_mode >> 6) & 7;
    const mode_t otherwise = isMember(status.st_uid, status.st_gid) ? status.st_mode >> 3 : status.st_mode;
    return (asOwner & ~otherwise) == 0;
}

// Returns 0 or the error; takes from `mode` the bits that the file may not have.
static int copyOwner(int from, const struct stat &status, int to, mode_t *mode)
{
    struct stat now = {};
    if (::fstat(to, &now) != 0)
        return errno;
    if (now.st_uid == status.st_uid && now.st_gid == status.st_gid)
        return 0;
    if (::fchown(to, status.st_uid, status.st_gid) == 0)
        return 0;
    const int error = errno;
    const bool groupAlone = now.st_uid != status.st_uid && reachesWithoutOwning(from, status)
            && (now.st_gid == status.st_gid || ::fchown(to, static_cast<uid_t>(-1), status.st_gid) == 0);
    *mode &= ~static_cast<mode_t>(S_ISUID);
    return groupAlone ? 0 : error;
}

int copyPermissions(int from, const struct stat &status, int to)
{
    mode_t mode = status.st_mode & 07777;
    if (const int error = copyOwner(from, status, to, &mode))
        return error;
    if (const int error = copyUserAttributes(from, to))
        return error;
    if (const int error = copyAccessList(from, to))
        return error;
    return ::fchmod(to, mode) == 0 ? 0 : errno;
}

}
}
