#include "verbs.h"

#include <gesturectl/gesturetext.h>
#include <gesturectl/map/page.h>
#include <gesturectl/map/textdrawing.h>
#include <gesturectl/output.h>

#include <gesture_api/gestureservice.h>
#include <gesture_api/src/atomicfile.h>

#include <QFileInfo>

#include <algorithm>
#include <iterator>
#include <numeric>
#include <optional>
#include <set>
#include <utility>

using namespace vellix;
using namespace vellix::gesture;
using analysis::Mode;

namespace gesturectl {

// A larger page would be unreadable, and would need gigabytes.
static const int mostPanels = 2000;
static const int mostZones = 20000;

namespace {
struct Request
{
    QString appId;
    QString mode; // empty for all
    std::optional<Gesture::Kind> kind;
    std::optional<Gesture::Direction> direction;
    QString picture; // .svg or .png; empty for a drawing in characters
};

// The touches of a panel, and the gestures that they can match.
struct Touches
{
    Mode mode;
    Gesture::Kind kind;
    Gesture::Direction direction;
    Gestures gestures;
    QString modeName;
};
}

// Checks the name alone, before anything is read.
static std::string checkPicture(const std::string &file)
{
    const QString name = text(file);
    const auto ends = [&name](const char *suffix) { return name.endsWith(QLatin1String(suffix), Qt::CaseInsensitive); };
    return ends(".svg") || ends(".png") ? std::string() : "'" + file + "' is neither .svg nor .png";
}

static void declare(Options *options, Request *request)
{
    options->app(&request->appId).required();
    options->mode(&request->mode, "Only gestures that apply in this mode");
    options->kind(&request->kind, "Only gestures of this kind");
    options->direction(&request->direction, "Only gestures of this direction");
    options->text("-o,--output", &request->picture, "Draw to this .svg or .png file instead of the terminal")
            .check(checkPicture)
            .type("FILE");
}

static Gestures matching(const Gestures &gestures, const Mode &mode, Gesture::Kind kind, Gesture::Direction direction)
{
    Gestures some;
    std::copy_if(gestures.cbegin(), gestures.cend(), std::back_inserter(some), [&](const Gesture *gesture) {
        return !analysis::firstFailed(gesture, {mode, kind, direction, std::nullopt});
    });
    return some;
}

static bool isWanted(const Gesture *gesture, const Request &request)
{
    return (!request.kind || gesture->kind() == *request.kind)
            && (!request.direction || gesture->direction() == *request.direction);
}

static QVector<Touches> touchesOf(const Gestures &gestures, const Request &request)
{
    const QVector<Mode> modes =
            request.mode.isEmpty() ? analysis::modesOf(gestures) : QVector<Mode>{Mode(request.mode)};
    QVector<Touches> all;
    for (const Mode &mode : modes) {
        const QString name = mode   ? QStringLiteral("mode ") + shortened(*mode)
                : modes.size() == 1 ? QStringLiteral("any mode")
                                    : QStringLiteral("any other mode");
        std::set<std::pair<Gesture::Kind, Gesture::Direction>> touches;
        for (const Gesture *gesture : gestures) {
            if (analysis::applies(gesture, mode) && isWanted(gesture, request))
                touches.insert({gesture->kind(), gesture->direction()});
        }
        for (const auto &[kind, direction] : touches)
            all.append({mode, kind, direction, matching(gestures, mode, kind, direction), name});
    }
    return all;
}

static QString titleOf(const Touches &touches)
{
    QString touch = kindText(touches.kind);
    const bool isMovement = touches.kind == Gesture::Swipe || touches.kind == Gesture::Drag;
    if (touches.direction != Gesture::NoDirection)
        touch += QLatin1Char(' ') + directionText(touches.direction);
    else if (isMovement)
        touch += QStringLiteral(" without direction");
    return QStringLiteral("%1, %2").arg(touches.modeName, touch);
}

static QString zoneText(const QRectF &zone, const QMap<QString, QRectF> &names)
{
    // If a zone has two names, take the predefined one: every application knows it.
    const QString name = GestureService::predefinedZones.key(zone, names.key(zone));
    return name.isEmpty() ? numbersOf(zone) : shortened(name);
}

// The touches left for a last gesture for the whole screen.
static QVector<QRectF> unmatchedAreas(const Touches &touches)
{
    Gesture last(QString(), QStringList(), touches.kind, Gesture::wholeZone, touches.direction, {}, nullptr, nullptr,
                 {});
    const analysis::Reach reach = analysis::reachOf(&last, Gestures(touches.gestures) << &last, touches.mode);
    return reach.none ? QVector<QRectF>() : reach.left;
}

static Panel panelOf(const Touches &touches, const QMap<QString, QRectF> &zones)
{
    Panel panel{titleOf(touches),
                {touches.mode, touches.kind, touches.direction, std::nullopt},
                {},
                unmatchedAreas(touches)};
    for (const Gesture *gesture : touches.gestures)
        panel.entries.append({gesture, zoneText(gesture->zone(), zones),
                              analysis::reachOf(gesture, touches.gestures, touches.mode)});
    return panel;
}

static Result<ExitStatus> write(const QString &file, const QByteArray &bytes)
{
    const auto refuse = [&file](const QString &reason) {
        return Left(Failure{BadFiles, file + QStringLiteral(": ") + reason});
    };
    const QFileInfo info(file);
    if (info.exists() && !info.isFile())
        return refuse(QStringLiteral("Not a regular file"));
    const auto written = writeAtomically(file, bytes);
    return written.isRight() ? Result<ExitStatus>(Right(Success)) : refuse(written.left().reason);
}

static Result<ExitStatus> draw(const QString &appId, const QString &configuration, const QVector<Touches> &all,
                               const QMap<QString, QRectF> &zones, const QString &file)
{
    const int count = std::accumulate(all.cbegin(), all.cend(), 0,
                                      [](int sum, const Touches &touches) { return sum + touches.gestures.size(); });
    if (all.size() > mostPanels || count > mostZones)
        return Left(
                Failure{BadFiles,
                        QStringLiteral("%1 panels with %2 zones are too many for one page: restrict them with --mode, "
                                       "--kind or --direction")
                                .arg(all.size())
                                .arg(count)});
    Page page{appId, configuration, {}};
    for (const Touches &touches : all)
        page.panels.append(panelOf(touches, zones));
    const bool isPng = file.endsWith(QLatin1String(".png"), Qt::CaseInsensitive);
    return (isPng ? png(page) : Result<QByteArray>(Right(svg(page)))).flatMap([&file](const QByteArray &bytes) {
        return write(file, bytes);
    });
}

// Panel by panel: there may be many.
static void printDrawing(const QString &appId, const QString &configuration, const QVector<Touches> &all,
                         const QMap<QString, QRectF> &zones)
{
    print(shortened(appId) + QStringLiteral(": ") + shortened(configuration));
    for (const Touches &touches : all)
        print(QStringList(QString()) + textDrawing(panelOf(touches, zones)));
}

static Result<ExitStatus> map(const Request &request)
{
    const DefaultFeaturesProvider features;
    QObject owner;
    const auto loaded = load(request.appId, &features, &owner);
    if (loaded.isLeft())
        return Left(loaded.left());
    const auto zones = zonesOf(loaded.right().paths);
    if (zones.isLeft())
        return Left(zones.left());

    const QVector<Touches> all = touchesOf(loaded.right().gestures, request);
    if (all.isEmpty())
        return Left(
                Failure{NoneMatches, QStringLiteral("application '%1' has no matching gesture").arg(request.appId)});
    const QString configuration = resolved(loaded.right().paths.defaultPath());
    if (!request.picture.isEmpty())
        return draw(request.appId, configuration, all, zones.right(), request.picture);
    printDrawing(request.appId, configuration, all, zones.right());
    return Right(Success);
}

Verb mapVerb()
{
    return verb("map", "Draw the zones of the gestures, in the order of the lookup",
                "Example: gesturectl map --app reader --mode reading -o reading.svg", declare, map);
}

}
