#include "bench.h"

#include "started.h"

#include <QCoreApplication>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

static Started start(const char *program, double *nanoseconds)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        qFatal("no pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);

    QByteArray path = (QCoreApplication::applicationDirPath() + '/' + program).toLocal8Bit();
    char *const arguments[] = {path.data(), nullptr};
    pid_t child;
    const double begin = monotonicNanoseconds();
    if (posix_spawn(&child, path, &actions, nullptr, arguments, environ) != 0)
        qFatal("can not start %s", path.constData());
    close(ends[1]);
    posix_spawn_file_actions_destroy(&actions);

    Started started;
    const bool told = read(ends[0], &started, sizeof started) == sizeof started;
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (!told || status != 0)
        qFatal("%s failed", program);
    *nanoseconds = started.at - begin;
    return started;
}

std::vector<Row> benchStart()
{
    const SampleTree tree(sizeS);
    std::vector<double> memory, bareMemory, more;
    const auto measure = [](const char *program, std::vector<double> *residents) {
        double nanoseconds = 0;
        residents->push_back(start(program, &nanoseconds).residentBytes / (1024.0 * 1024.0));
        return nanoseconds;
    };
    const Comparison time = compare([&] { return measure("start_lookup", &memory); },
                                    [&] { return measure("start_bare", &bareMemory); }, 101);
    const auto megabytes = [](double value) { return QString("%1 MiB").arg(value, 0, 'f', 2); };
    const double residents = median(memory);
    const double bareResidents = median(bareMemory);
    const QString bare = "bare QCoreApplication";
    return {
            {"start to first lookup at S", bare, timeText(time.ours), timeText(time.beside),
             (time.ours - time.beside) / 1e6, "ms", 0.8, true},
            {"memory at the first lookup at S", bare, megabytes(residents), megabytes(bareResidents),
             residents - bareResidents, "MiB", 2.5, true},
    };
}
