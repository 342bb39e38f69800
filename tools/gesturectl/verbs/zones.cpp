#include "verbs.h"

#include <gesturectl/gesturetext.h>
#include <gesturectl/output.h>

#include <gesture_api/gestureservice.h>

#include <QJsonDocument>
#include <QJsonObject>

using namespace vellix;
using namespace vellix::gesture;

namespace gesturectl {

namespace {
struct Request
{
    QString appId; // empty for the predefined zones only
    bool json = false;
};
}

static void declare(Options *options, Request *request)
{
    options->app(&request->appId, "Also show the zones of this application");
    options->json(&request->json);
}

static Result<ExitStatus> zones(const Request &request)
{
    const Result<QMap<QString, QRectF>> zones =
            request.appId.isEmpty() ? Right(GestureService::predefinedZones) : pathsOf(request.appId).flatMap(zonesOf);
    return zones.map([&request](const QMap<QString, QRectF> &all) {
        QJsonObject object;
        QList<QStringList> rows;
        for (auto zone = all.cbegin(); zone != all.cend(); ++zone) {
            object.insert(zone.key(), toJson(*zone));
            rows.append({zone.key(), numbersOf(*zone)});
        }
        if (request.json)
            print(QJsonDocument(object));
        else
            printTable(rows);
        return Success;
    });
}

Verb zonesVerb()
{
    return verb("zones", "Show the zones that a configuration can use", "Example: gesturectl zones", declare, zones);
}

}
