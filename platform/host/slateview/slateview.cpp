#include "../takefirst.h"

#include <vellix/platform/slateview.h>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

static bool isOnPath(const char *program)
{
    const char *path = std::getenv("PATH");
    std::string_view directories = path ? path : "";
    while (!directories.empty()) {
        const std::string directory(vellix::takeFirst(directories, ':'));
        if (access((directory + '/' + program).c_str(), X_OK) == 0)
            return true;
    }
    return false;
}

bool SvTTSSupported(void)
{
    for (const char *engine : {"espeak-ng", "espeak", "flite", "festival", "pico2wave", "spd-say"}) {
        if (isOnPath(engine))
            return true;
    }
    return false;
}

int GetCurrentTask(void)
{
    return getpid();
}

const TaskInfo *GetTaskInfo(int pid)
{
    static thread_local char name[64];
    static thread_local TaskInfo info;

    std::FILE *file = std::fopen(("/proc/" + std::to_string(pid) + "/comm").c_str(), "re");
    if (!file)
        return nullptr;
    const bool known = std::fgets(name, sizeof name, file);
    std::fclose(file);
    if (!known)
        return nullptr;
    name[std::strcspn(name, "\n")] = '\0';
    info.name = name;
    return &info;
}
