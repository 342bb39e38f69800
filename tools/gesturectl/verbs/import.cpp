#include "verbs.h"

#include <gesturectl/bindingsfile.h>
#include <gesturectl/output.h>

#include <optional>
#include <set>

using namespace vellix;
using namespace vellix::gesture;

namespace gesturectl {

namespace {
struct Request
{
    QString appId;
    QString file;
    bool isDryRun = false;
};
}

static void declare(Options *options, Request *request)
{
    options->app(&request->appId).required();
    options->file("FILE", &request->file, "A file that 'export' printed").required();
    options->flag("--dry-run", &request->isDryRun, "Only show the difference");
}

// One line for each binding that differs, in the order of the gestures' ids.
static QStringList difference(const Bindings &before, const Bindings &after)
{
    std::set<QString> ids(before.keyBegin(), before.keyEnd());
    ids.insert(after.keyBegin(), after.keyEnd());
    QStringList lines;
    for (const QString &id : ids) {
        const auto old = before.constFind(id);
        const auto now = after.constFind(id);
        if (old == before.cend())
            lines.append(QStringLiteral("+ %1: %2").arg(id, *now));
        else if (now == after.cend())
            lines.append(QStringLiteral("- %1: %2").arg(id, *old));
        else if (*old != *now)
            lines.append(QStringLiteral("~ %1: %2 -> %3").arg(id, *old, *now));
    }
    return lines;
}

// The bindings of known gestures; all others are reported.
static Bindings knownBindings(const Bindings &offered, const Gestures &gestures, const Request &request)
{
    Bindings known;
    for (auto binding = offered.cbegin(); binding != offered.cend(); ++binding) {
        if (gestureById(gestures, binding.key()))
            known.insert(binding.key(), *binding);
        else
            printError(QStringLiteral("%1: actions.%2: ignored, application '%3' has no such gesture")
                               .arg(resolved(request.file), binding.key(), request.appId));
    }
    return known;
}

// Prints the difference, and applies it.
static Result<ExitStatus> replaceBindings(const ApplicationPaths &paths, const Gestures &gestures,
                                          const Bindings &offered, const Request &request)
{
    std::optional<BindLock> lock;
    if (!request.isDryRun)
        lock.emplace(paths);
    if (lock && lock->failure())
        return Left(*lock->failure());
    const auto current = bindingsOf(paths);
    if (current.isLeft()) {
        const QString advice =
                QStringLiteral("; the file is unchanged: repair it, or remove it with 'gesturectl reset'");
        return Left(Failure{current.left().status, current.left().message + advice});
    }
    const Bindings wanted = knownBindings(offered, gestures, request);
    const QStringList lines = difference(current.right(), wanted);
    const auto written = request.isDryRun || lines.isEmpty() ? Result<ExitStatus>(Right(Success))
                                                             : writeBindings(paths, gestures, wanted);
    lock.reset(); // the reader of the output may be slow
    print(lines.isEmpty() ? QStringList(QStringLiteral("no difference")) : lines);
    return written;
}

static Result<ExitStatus> importBindings(const Request &request)
{
    const DefaultFeaturesProvider features;
    QObject owner;
    const auto paths = pathsOf(request.appId);
    if (paths.isLeft())
        return Left(paths.left());
    const ApplicationPaths source(request.appId, request.file, paths.right().defaultPath());
    const auto offered = bindingsOfFile(source);
    if (offered.isLeft())
        return Left(offered.left());
    const auto defaults = gesturesOf(paths.right(), &features, Bindings(), &owner);
    if (defaults.isLeft())
        return Left(defaults.left());
    const auto gestures = gesturesOf(source, &features, offered.right(), &owner);
    if (gestures.isLeft())
        return Left(gestures.left());
    return replaceBindings(paths.right(), gestures.right(), offered.right(), request);
}

Verb importVerb()
{
    return verb("import", "Replace the user's choices with those of a file, and show the difference",
                "Example: gesturectl import --app reader choices.json --dry-run", declare, importBindings);
}

}
