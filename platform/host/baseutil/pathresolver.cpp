#include <vellix/platform/baseutil.h>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <sstream>

namespace vellix {

static std::string environment(const char *name, const std::string &fallback)
{
    const char *value = std::getenv(name);
    return value && *value ? value : fallback;
}

static std::string homeDirectory()
{
    const passwd *user = nullptr;
    if (!std::getenv("HOME"))
        user = getpwuid(getuid());
    return environment("HOME", user && user->pw_dir ? user->pw_dir : "/");
}

static bool isDirectory(const std::string &path)
{
    struct stat status;
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

static std::string userDataDirectory()
{
    return environment("XDG_DATA_HOME", homeDirectory() + "/.local/share") + "/vellix";
}

// The first directory that has ours, else ours in the first one; empty for no directory at all.
static std::string systemDataDirectory(const std::string &list)
{
    std::istringstream directories(list);
    std::string first;
    for (std::string directory; std::getline(directories, directory, ':');) {
        if (directory.empty())
            continue;
        const std::string candidate = directory + "/vellix";
        if (isDirectory(candidate))
            return candidate;
        if (first.empty())
            first = candidate;
    }
    return first;
}

PathResolver::PathResolver(const std::string &userData, const std::string &systemData)
    : m_userData(userData), m_systemData(systemData)
{
}

static std::string systemDataDirectory()
{
    const std::string standard = "/usr/local/share:/usr/share";
    const std::string named = systemDataDirectory(environment("XDG_DATA_DIRS", standard));
    return named.empty() ? systemDataDirectory(standard) : named;
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
        return m_userData + path.substr(userPrefix.size());
    if (path.compare(0, systemPrefix.size(), systemPrefix) == 0)
        return m_systemData + path.substr(systemPrefix.size());
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
