#include "bench.h"

#include "started.h"

#include <QCoreApplication>
#include <QProcess>
#include <QRegularExpression>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

static QString pathOf(const char *program)
{
    return QCoreApplication::applicationDirPath() + '/' + program;
}

static Started start(const char *program, double *nanoseconds)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        qFatal("no pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);

    QByteArray path = pathOf(program).toLocal8Bit();
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

// How many symbols the dynamic linker looks up for a program, from its start to its end.
static double lookups(const char *program)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("LD_BIND_NOW");
    environment.insert("LD_DEBUG", "statistics");
    process.setProcessEnvironment(environment);
    process.start(pathOf(program), QStringList());
    if (!process.waitForFinished() || process.exitCode() != 0)
        qFatal("%s failed", program);
    const QRegularExpression total("final number of relocations: +([0-9]+)");
    const auto match = total.match(process.readAllStandardError());
    if (!match.hasMatch())
        qFatal("the dynamic linker reported nothing of %s", program);
    return match.captured(1).toDouble();
}

namespace {

/// What one program costs, in all its starts.
struct Costs
{
    const char *program;
    std::vector<double> milliseconds, mebibytes, faults;

    double measure()
    {
        double nanoseconds = 0;
        const Started started = start(program, &nanoseconds);
        milliseconds.push_back(started.processorTime / 1e6);
        mebibytes.push_back(started.residentBytes / (1024.0 * 1024.0));
        faults.push_back(started.pageFaults);
        return nanoseconds;
    }
};

}

// The difference between both programs, in their own unit.
static Row more(const QString &what, double ours, double bare, const QString &unit, double goal, bool ofThisMachine)
{
    const auto text = [&unit](double value) {
        return QString::number(value, 'f', unit.isEmpty() ? 0 : 2) + ' ' + unit;
    };
    return {what,         "bare QCoreApplication", text(ours).trimmed(), text(bare).trimmed(), ours - bare, unit, goal,
            ofThisMachine};
}

std::vector<Row> benchStart()
{
    const SampleTree tree(sizeS);
    Costs ours{"start_lookup", {}, {}, {}};
    Costs bare{"start_bare", {}, {}, {}};
    const Comparison time = compare([&] { return ours.measure(); }, [&] { return bare.measure(); }, 101);
    return {
            more("start to first lookup at S", time.ours / 1e6, time.beside / 1e6, "ms", 0.8, true),
            more("CPU to first lookup at S", median(ours.milliseconds), median(bare.milliseconds), "ms", 1.2, true),
            more("memory at the first lookup at S", median(ours.mebibytes), median(bare.mebibytes), "MiB", 2.25, true),
            more("page faults to first lookup", median(ours.faults), median(bare.faults), QString(), 120, true),
            more("symbol lookups of a start", lookups(ours.program), lookups(bare.program), QString(), 500, false),
    };
}
