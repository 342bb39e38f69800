#include "verbs.h"

#include <analysis/lookup.h>

#include <gesturectl/gesturetext.h>
#include <gesturectl/output.h>

#include <gesture_api/gestureservice.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <optional>

using namespace vellix;
using namespace vellix::gesture;

namespace gesturectl {

namespace {
struct Request
{
    QString appId;
    std::optional<Gesture::Kind> kind; // empty for all
    QString mode;                      // empty for all
    bool json = false;
};
}

static void declare(Options *options, Request *request)
{
    options->app(&request->appId).required();
    options->kind(&request->kind, "Only gestures of this kind");
    options->mode(&request->mode, "Only gestures that apply in this mode");
    options->json(&request->json);
}

static QString zoneText(const QRectF &zone)
{
    const QString name = GestureService::predefinedZones.key(zone);
    return name.isEmpty() ? numbersOf(zone) : name;
}

static QJsonObject toJson(const Gesture *gesture)
{
    QJsonArray available;
    for (const Action *action : gesture->availableActions())
        available.append(action->path());
    return {{QStringLiteral("id"), gesture->id()},
            {QStringLiteral("modes"), QJsonArray::fromStringList(gesture->modes())},
            {QStringLiteral("kind"), kindText(gesture->kind())},
            {QStringLiteral("direction"), directionText(gesture->direction())},
            {QStringLiteral("zone"), toJson(gesture->zone())},
            {QStringLiteral("availableActions"), available},
            {QStringLiteral("defaultAction"), jsonPathOf(gesture->defaultAction())},
            {QStringLiteral("currentAction"), jsonPathOf(gesture->currentAction())},
            {QStringLiteral("supported"), gesture->supported()}};
}

static QStringList toRow(const Gesture *gesture)
{
    return {gesture->id(),
            gesture->modes().isEmpty() ? QStringLiteral("(all)") : gesture->modes().join(QLatin1Char(',')),
            kindText(gesture->kind()),
            directionText(gesture->direction()),
            zoneText(gesture->zone()),
            pathOf(gesture->currentAction())
                    + (gesture->supported() ? QString() : QStringLiteral("  [not on this device]"))};
}

static Result<ExitStatus> list(const Request &request)
{
    const DefaultFeaturesProvider features;
    QObject owner;
    return load(request.appId, &features, &owner).map([&](const Loaded &loaded) {
        QJsonArray array;
        QList<QStringList> rows;
        for (const Gesture *gesture : loaded.gestures) {
            const bool isOfKind = !request.kind || gesture->kind() == *request.kind;
            const bool isInMode = request.mode.isEmpty() || analysis::applies(gesture, request.mode);
            if (!isOfKind || !isInMode)
                continue;
            array.append(toJson(gesture));
            rows.append(toRow(gesture));
        }
        if (request.json)
            print(QJsonDocument(array));
        else
            printTable(rows);
        return Success;
    });
}

Verb listVerb()
{
    return verb("list", "Show the gestures and their current actions",
                "Example: gesturectl list --app reader --kind swipe", declare, list);
}

}
