#include "verbs.h"

#include <gesturectl/output.h>

#include <vellix/platform/vxcomponents.h>

#include <QCoreApplication>
#include <QJsonObject>

using namespace vellix;
using namespace vellix::gesture;

namespace gesturectl {

namespace {
struct Request
{
    QString appId;
    int count = 0; // ends after this number of changes, never if 0
    bool json = false;
};
}

static void declare(Options *options, Request *request)
{
    options->app(&request->appId).required();
    options->number("--count", &request->count, "Stop after this many changes, 0 for never");
    options->json(&request->json);
}

// Gesture id to the path of its current action.
static Bindings currentActions(const Gestures &gestures)
{
    Bindings actions;
    for (const Gesture *gesture : gestures)
        actions.insert(gesture->id(), gesture->currentAction() ? gesture->currentAction()->path() : QString());
    return actions;
}

static Result<Bindings> currentActions(const ApplicationPaths &paths, const FeaturesProvider *features)
{
    QObject owner;
    return bindingsOf(paths).flatMap([&](const Bindings &bindings) {
        return gesturesOf(paths, features, bindings, &owner).map([](const Gestures &gestures) {
            return currentActions(gestures);
        });
    });
}

static void printChange(const Bindings &before, const Bindings &after, bool json)
{
    QStringList texts;
    QJsonObject object;
    for (auto action = after.cbegin(); action != after.cend(); ++action) {
        if (before.value(action.key()) == *action)
            continue;
        texts.append(QStringLiteral("%1: %2 -> %3").arg(action.key(), before.value(action.key()), *action));
        object.insert(action.key(), *action);
    }
    if (json)
        print(QJsonDocument(object), QJsonDocument::Compact);
    else
        print(texts.isEmpty() ? QStringLiteral("no gesture changed") : texts.join(QStringLiteral(", ")));
}

static Result<ExitStatus> watch(const Request &request)
{
    const DefaultFeaturesProvider features;
    const auto paths = pathsOf(request.appId);
    if (paths.isLeft())
        return Left(paths.left());
    const auto start = currentActions(paths.right(), &features);
    if (start.isLeft())
        return Left(start.left());

    Bindings known = start.right();
    int changes = 0;
    QObject context; // of the watch; a provider would log that the optional paths file is missing
    const QString file = resolved(paths.right().currentPath());
    components::fs::__watchFileChange(file, &context, [&] {
        const auto now = currentActions(paths.right(), &features);
        if (now.isLeft()) {
            printError(now.left().message);
        } else {
            printChange(known, now.right(), request.json);
            known = now.right();
        }
        if (++changes == request.count)
            QCoreApplication::quit();
    });
    printError(QStringLiteral("watching ") + file);
    QCoreApplication::exec();
    return Right(Success);
}

Verb watchVerb()
{
    return verb("watch", "Print a line each time another process changes the bindings",
                "Example: gesturectl watch --app reader", declare, watch);
}

}
