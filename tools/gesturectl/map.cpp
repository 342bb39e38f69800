#include "drawing.h"
#include "output.h"
#include "textdrawing.h"
#include "verbs.h"

#include <gesture_api/gestureservice.h>
#include <gesture_api/src/atomicfile.h>

#include <QFileInfo>

#include <algorithm>
#include <iterator>
#include <numeric>
#include <set>
#include <utility>

using namespace vellix;
using namespace vellix::gesture;
using analysis::Mode;

namespace gesturectl {

// A larger page could not be looked at, and would take gigabytes.
static const int mostPanels = 2000;
static const int mostZones = 20000;

namespace {
// The touches of a panel, and the gestures among which they choose.
struct Choice
{
    Mode mode;
    Gesture::Kind kind;
    Gesture::Direction direction;
    Gestures gestures;
    QString modeName;
};
}

static Gestures matching(const Gestures &gestures, const Mode &mode, Gesture::Kind kind, Gesture::Direction direction)
{
    Gestures some;
    std::copy_if(gestures.cbegin(), gestures.cend(), std::back_inserter(some), [&](const Gesture *gesture) {
        return gesture->kind() == kind && gesture->direction() == direction && analysis::applies(gesture, mode);
    });
    return some;
}

static bool isWanted(const Gesture *gesture, const MapFilter &filter)
{
    const QString kind = Gesture::kindToVariant(gesture->kind()).toString();
    const QString direction = Gesture::directionToVariant(gesture->direction()).toString();
    return (filter.kind.isEmpty() || kind == filter.kind.toLower())
            && (filter.direction.isEmpty() || direction == filter.direction);
}

static QVector<Choice> choicesOf(const Gestures &gestures, const MapFilter &filter)
{
    const QVector<Mode> modes = filter.mode.isEmpty() ? analysis::modesOf(gestures) : QVector<Mode>{Mode(filter.mode)};
    QVector<Choice> choices;
    for (const Mode &mode : modes) {
        const QString name = mode   ? QStringLiteral("mode ") + shortened(*mode)
                : modes.size() == 1 ? QStringLiteral("any mode")
                                    : QStringLiteral("any other mode");
        std::set<std::pair<Gesture::Kind, Gesture::Direction>> touches;
        for (const Gesture *gesture : gestures) {
            if (analysis::applies(gesture, mode) && isWanted(gesture, filter))
                touches.insert({gesture->kind(), gesture->direction()});
        }
        for (const auto &[kind, direction] : touches)
            choices.append({mode, kind, direction, matching(gestures, mode, kind, direction), name});
    }
    return choices;
}

static QString titleOf(const Choice &choice)
{
    QString touch = Gesture::kindToVariant(choice.kind).toString();
    const bool isMovement = choice.kind == Gesture::Swipe || choice.kind == Gesture::Drag;
    if (choice.direction != Gesture::NoDirection)
        touch += QLatin1Char(' ') + Gesture::directionToVariant(choice.direction).toString();
    else if (isMovement)
        touch += QStringLiteral(" without direction");
    return QStringLiteral("%1, %2").arg(choice.modeName, touch);
}

static QString zoneText(const QRectF &zone, const QMap<QString, QRectF> &names)
{
    // Of two names the one that every application knows.
    const QString name = GestureService::predefinedZones.key(zone, names.key(zone));
    return name.isEmpty() ? numbersOf(zone) : shortened(name);
}

// What a gesture for the whole screen behind all others would still get.
static QVector<QRectF> deadAreas(const Choice &choice)
{
    Gesture last(QString(), QStringList(), choice.kind, Gesture::wholeZone, choice.direction, {}, nullptr, nullptr, {});
    const analysis::Reach reach = analysis::reachOf(&last, Gestures(choice.gestures) << &last, choice.mode);
    return reach.none ? QVector<QRectF>() : reach.left;
}

static Panel panelOf(const Choice &choice, const QMap<QString, QRectF> &zones)
{
    Panel panel{titleOf(choice), {}, deadAreas(choice)};
    for (const Gesture *gesture : choice.gestures)
        panel.entries.append(
                {gesture, zoneText(gesture->zone(), zones), analysis::reachOf(gesture, choice.gestures, choice.mode)});
    return panel;
}

static Result<ExitStatus> write(const QString &file, const QByteArray &bytes)
{
    const auto refuse = [&file](const QString &reason) {
        return Left(Failure{BadFiles, file + QStringLiteral(": ") + reason});
    };
    const QFileInfo info(file);
    if (info.exists() && !info.isFile())
        return refuse(QStringLiteral("is no regular file"));
    const auto written = writeAtomically(file, bytes);
    return written.isRight() ? Result<ExitStatus>(Right(Success)) : refuse(written.left().reason);
}

static Result<ExitStatus> draw(const QString &appId, const QString &configuration, const QVector<Choice> &choices,
                               const QMap<QString, QRectF> &zones, const QString &file)
{
    const int count = std::accumulate(choices.cbegin(), choices.cend(), 0,
                                      [](int sum, const Choice &choice) { return sum + choice.gestures.size(); });
    if (choices.size() > mostPanels || count > mostZones)
        return Left(Failure{BadFiles,
                            QStringLiteral("%1 panels with %2 zones are too many for one page: narrow it with --mode, "
                                           "--kind or --direction")
                                    .arg(choices.size())
                                    .arg(count)});
    Page page{appId, configuration, {}};
    for (const Choice &choice : choices)
        page.panels.append(panelOf(choice, zones));
    const bool isPng = file.endsWith(QLatin1String(".png"), Qt::CaseInsensitive);
    return (isPng ? png(page) : Result<QByteArray>(Right(svg(page)))).flatMap([&file](const QByteArray &bytes) {
        return write(file, bytes);
    });
}

// Panel by panel: there may be many.
static void printDrawing(const QString &appId, const QString &configuration, const QVector<Choice> &choices,
                         const QMap<QString, QRectF> &zones)
{
    print(shortened(appId) + QStringLiteral(": ") + shortened(configuration));
    for (const Choice &choice : choices)
        print(QStringList(QString()) + textDrawing(panelOf(choice, zones)));
}

Result<ExitStatus> map(const QString &appId, const MapFilter &filter, const QString &file)
{
    const DefaultFeaturesProvider features;
    QObject owner;
    const auto paths = pathsOf(appId);
    if (paths.isLeft())
        return Left(paths.left());
    const auto gestures = bindingsOf(paths.right()).flatMap([&](const Bindings &bindings) {
        return gesturesOf(paths.right(), &features, bindings, &owner);
    });
    if (gestures.isLeft())
        return Left(gestures.left());
    const auto zones = zonesOf(paths.right());
    if (zones.isLeft())
        return Left(zones.left());

    const QVector<Choice> choices = choicesOf(gestures.right(), filter);
    if (choices.isEmpty())
        return Left(Failure{NoneMatches, QStringLiteral("application '%1' has no such gesture").arg(appId)});
    const QString configuration = resolved(paths.right().defaultPath());
    if (!file.isEmpty())
        return draw(appId, configuration, choices, zones.right(), file);
    printDrawing(appId, configuration, choices, zones.right());
    return Right(Success);
}

}
