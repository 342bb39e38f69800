#include "../takefirst.h"

#include <vellix/platform/baseutil.h>

#include <limits.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace vellix {

// A relative path depends on the working directory of the program: it counts as unset.
static bool isAbsolute(std::string_view path)
{
    return !path.empty() && path.front() == '/';
}

static std::string environment(const char *name)
{
    const char *value = std::getenv(name);
    return value ? value : "";
}

static std::string homeDirectory()
{
    const std::string home = environment("HOME");
    if (isAbsolute(home))
        return home;
    const passwd *user = getpwuid(getuid());
    const std::string known = user && user->pw_dir ? user->pw_dir : "";
    return isAbsolute(known) ? known : "/";
}

static bool isDirectory(const std::string &path)
{
    struct stat status;
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

static std::string userDataDirectory()
{
    const std::string named = environment("XDG_DATA_HOME");
    return (isAbsolute(named) ? named : homeDirectory() + "/.local/share") + "/vellix";
}

// The first directory that has our subdirectory, else our subdirectory of the first one; empty without any directory.
static std::string systemDataDirectory(std::string_view list)
{
    std::string first;
    while (!list.empty()) {
        const std::string_view directory = takeFirst(list, ':');
        if (!isAbsolute(directory))
            continue;
        const std::string candidate = std::string(directory) + "/vellix";
        if (isDirectory(candidate))
            return candidate;
        if (first.empty())
            first = candidate;
    }
    return first;
}

static std::string systemDataDirectory()
{
    const std::string named = systemDataDirectory(environment("XDG_DATA_DIRS"));
    return named.empty() ? systemDataDirectory("/usr/local/share:/usr/share") : named;
}

// Whether the part after a prefix stays below its directory, judged by the names alone.
static bool staysBelow(std::string_view rest)
{
    if (!rest.empty() && rest.front() != '/')
        return false;
    int depth = 0;
    while (depth >= 0 && !rest.empty()) {
        const std::string_view name = takeFirst(rest, '/');
        if (name == "..")
            --depth;
        else if (!name.empty() && name != ".")
            ++depth;
    }
    return depth >= 0;
}

// A path that would leave its root becomes one below it whose name is too long to exist. So no caller has to check: it
// cannot be opened, made or removed, and neither can anything beside or below it.
static std::string join(const std::string &root, const std::string &rest)
{
    if (staysBelow(rest))
        return root + rest;
    std::string name = "this-path-leads-out-of-its-directory";
    name.resize(NAME_MAX + 1, '.');
    return root + '/' + name + "/none";
}

PathResolver::PathResolver(const std::string &userData, const std::string &systemData)
    : m_userData(userData), m_systemData(systemData)
{
}

PathResolver PathResolver::newDefault()
{
    return PathResolver(userDataDirectory(), systemDataDirectory());
}

std::string PathResolver::resolvePreffix(const std::string &path) const
{
    const std::string userPrefix = "${USERDATA}";
    const std::string systemPrefix = "${SYSTEMDATA}";
    if (path.compare(0, userPrefix.size(), userPrefix) == 0)
        return join(m_userData, path.substr(userPrefix.size()));
    if (path.compare(0, systemPrefix.size(), systemPrefix) == 0)
        return join(m_systemData, path.substr(systemPrefix.size()));
    return path;
}

bool PathResolver::exists(const std::string &path) const
{
    struct stat status;
    return stat(resolvePreffix(path).c_str(), &status) == 0;
}

bool PathResolver::remove(const std::string &path) const
{
    return unlink(resolvePreffix(path).c_str()) == 0;
}

}
