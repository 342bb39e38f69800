#include "verbs.h"

#include <gesturectl/gesturetext.h>
#include <gesturectl/output.h>
#include <gesturectl/touch.h>

#include <gesture_api/gestureservice.h>

#include <QJsonDocument>
#include <QJsonObject>

using namespace vellix;
using namespace vellix::gesture;

namespace gesturectl {

namespace {
struct Request
{
    QString appId;
    Touch touch;
    bool json = false;
};
}

static void declare(Options *options, Request *request)
{
    options->app(&request->appId).required();
    declareTouch(options, &request->touch);
    options->json(&request->json);
}

static Result<ExitStatus> find(const Request &request)
{
    const DefaultFeaturesProvider features;
    QObject owner;
    return load(request.appId, &features, &owner).map([&](const Loaded &loaded) {
        // The service's own lookup; its gestures are known to load.
        const GestureService service(loaded.paths, &features, true,
                                     GestureService::GestureList([&loaded] { return loaded.gestures; }), false);
        const Touch &touch = request.touch;
        const Gesture *gesture = service.findGesture(touch.mode, touch.kind, touch.direction, touch.position);
        if (request.json) {
            const QJsonValue id = gesture ? QJsonValue(gesture->id()) : QJsonValue();
            print(QJsonDocument(
                    QJsonObject{{QStringLiteral("gesture"), id},
                                {QStringLiteral("action"), jsonPathOf(gesture ? gesture->currentAction() : nullptr)}}));
        } else if (gesture) {
            print(gesture->id() + QLatin1Char(' ') + pathOf(gesture->currentAction()));
        }
        return gesture ? Success : NoneMatches;
    });
}

Verb findVerb()
{
    return verb("find", "Show the gesture that a touch matches, and its action",
                "Example: gesturectl find --app reader --mode reading --kind tap --at 0.9,0.5", declare, find);
}

}
