#include "verbs.h"

#include <gesturectl/bindingsfile.h>
#include <gesturectl/gesturetext.h>
#include <gesturectl/output.h>

#include <optional>

using namespace vellix;
using namespace vellix::gesture;

namespace gesturectl {

namespace {
struct Request
{
    QString appId;
    QString gestureId;
    QString actionPath;
};
}

static void declare(Options *options, Request *request)
{
    options->app(&request->appId).required();
    options->gesture(&request->gestureId);
    options->text("ACTION", &request->actionPath, "The path of an action that the gesture offers").required();
}

// Why the configuration alone makes the binding impossible.
static std::optional<Failure> refusal(const Request &request, const ApplicationPaths &paths,
                                      const FeaturesProvider *features)
{
    QObject owner;
    const auto defaults = gesturesOf(paths, features, Bindings(), &owner);
    if (defaults.isLeft())
        return defaults.left();
    const auto gesture = gestureOf(defaults.right(), request.appId, request.gestureId);
    if (gesture.isLeft())
        return gesture.left();
    if (!offers(gesture.right(), request.actionPath))
        return Failure{WrongUse,
                       QStringLiteral("gesture '%1' does not offer the action '%2'")
                               .arg(request.gestureId, request.actionPath)};
    const auto alone = gesturesOf(paths, features, {{request.gestureId, request.actionPath}}, &owner);
    if (alone.isLeft())
        return Failure{WrongUse, QStringLiteral("the binding would not load: ") + alone.left().message};
    return std::nullopt;
}

static Result<ExitStatus> bind(const Request &request)
{
    const auto paths = pathsOf(request.appId);
    if (paths.isLeft())
        return Left(paths.left());
    std::optional<BindLock> lock(paths.right());
    if (lock->failure())
        return Left(*lock->failure());
    const auto bindings = bindingsOf(paths.right());
    if (bindings.isLeft())
        return Left(bindings.left());
    const DefaultFeaturesProvider features;
    if (const auto failure = refusal(request, paths.right(), &features))
        return Left(*failure);

    QObject owner;
    Bindings wanted = bindings.right();
    wanted.insert(request.gestureId, request.actionPath);
    const auto gestures = gesturesOf(paths.right(), &features, wanted, &owner);
    if (gestures.isLeft())
        return Left(gestures.left());
    const QString current = pathOf(gestureById(gestures.right(), request.gestureId)->currentAction());
    if (current != request.actionPath)
        return Left(Failure{WrongUse,
                            QStringLiteral("gesture '%1' always performs '%2': its 'currentAction' hides every binding")
                                    .arg(request.gestureId, current)});

    return writeBindings(paths.right(), gestures.right(), wanted).map([&](ExitStatus status) {
        lock.reset(); // the reader of the output may be slow
        print(request.gestureId + QStringLiteral(" is bound to ") + request.actionPath);
        return status;
    });
}

Verb bindVerb()
{
    return verb("bind", "Choose the action of a gesture",
                "Example: gesturectl bind --app reader ReadingTapRightNoDirection view/menu", declare, bind);
}

}
