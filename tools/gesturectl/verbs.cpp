#include "verbs.h"

#include "bindingsfile.h"
#include "gesturetext.h"
#include "output.h"

#include <gesture_api/gestureservice.h>

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

using namespace vellix;
using namespace vellix::gesture;

namespace gesturectl {

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

Result<ExitStatus> list(const QString &appId, const QString &kind, const QString &mode, bool json)
{
    const DefaultFeaturesProvider features;
    QObject owner;
    return load(appId, &features, &owner).map([&](const Loaded &loaded) {
        QJsonArray array;
        QList<QStringList> rows;
        for (const Gesture *gesture : loaded.gestures) {
            const bool isOfKind = kind.isEmpty() || kindText(gesture->kind()) == kind.toLower();
            const bool isInMode = mode.isEmpty() || gesture->modes().isEmpty() || gesture->modes().contains(mode);
            if (!isOfKind || !isInMode)
                continue;
            array.append(toJson(gesture));
            rows.append(toRow(gesture));
        }
        if (json)
            print(QJsonDocument(array));
        else
            printTable(rows);
        return Success;
    });
}

Result<ExitStatus> find(const QString &appId, const Touch &touch, bool json)
{
    const DefaultFeaturesProvider features;
    QObject owner;
    return load(appId, &features, &owner).map([&](const Loaded &loaded) {
        // The service's own lookup, on gestures that are known to be loaded.
        const GestureService service(loaded.paths, &features, true,
                                     GestureService::GestureList([&loaded] { return loaded.gestures; }), false);
        const Gesture *gesture = service.findGesture(touch.mode, touch.kind, touch.direction, touch.position);
        if (json) {
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

Result<ExitStatus> zones(const QString &appId, bool json)
{
    const Result<QMap<QString, QRectF>> zones =
            appId.isEmpty() ? Right(GestureService::predefinedZones) : pathsOf(appId).flatMap(zonesOf);
    return zones.map([json](const QMap<QString, QRectF> &all) {
        QJsonObject object;
        QList<QStringList> rows;
        for (auto zone = all.cbegin(); zone != all.cend(); ++zone) {
            object.insert(zone.key(), toJson(*zone));
            rows.append({zone.key(), numbersOf(*zone)});
        }
        if (json)
            print(QJsonDocument(object));
        else
            printTable(rows);
        return Success;
    });
}

// Whether a node stands for its action itself and not for a menu on the way to it.
static bool isLeaf(const ActionProxyNode *node)
{
    return node->action() && node->path().mid(1).join(QLatin1Char('/')) == node->action()->path();
}

static void printNodes(const ActionProxyNode *above, const Gesture *gesture, const QString &indent)
{
    const QList<ActionProxyNode *> &nodes = above->childNodeList();
    for (const ActionProxyNode *node : nodes) {
        const bool last = node == nodes.last();
        QString text = node->title().isEmpty() ? node->pathSegment() : node->title();
        if (isLeaf(node)) {
            text += QStringLiteral("  ") + node->action()->path();
            if (node->action() == gesture->currentAction())
                text += QStringLiteral("  [current]");
            if (!node->action()->supported())
                text += QStringLiteral("  [not on this device]");
        }
        print(indent + (last ? QStringLiteral("└─ ") : QStringLiteral("├─ ")) + text);
        printNodes(node, gesture, indent + (last ? QStringLiteral("   ") : QStringLiteral("│  ")));
    }
}

static QJsonArray toJson(const ActionProxyNode *above)
{
    QJsonArray array;
    for (const ActionProxyNode *node : above->childNodeList()) {
        QJsonObject object{{QStringLiteral("segment"), node->pathSegment()},
                           {QStringLiteral("title"), node->title()},
                           {QStringLiteral("children"), toJson(node)}};
        if (isLeaf(node))
            object.insert(QStringLiteral("action"), node->action()->path());
        array.append(object);
    }
    return array;
}

// A menu is printed level by level within the one before, and the indentation grows with it.
static constexpr int maxLevels = 500;

static bool canBePrinted(const Gesture *gesture)
{
    const QList<Action *> &available = gesture->availableActions();
    return std::all_of(available.cbegin(), available.cend(),
                       [](const Action *action) { return action->path().count(QLatin1Char('/')) < maxLevels; });
}

static void printMenu(Gesture *gesture, bool json)
{
    const ActionProxyNode *tree = gesture->actionTree();
    if (json) {
        print(QJsonDocument(tree ? toJson(tree) : QJsonArray()));
        return;
    }
    print(gesture->id());
    if (tree)
        printNodes(tree, gesture, QString());
}

Result<ExitStatus> actions(const QString &appId, const QString &gestureId, bool json)
{
    const DefaultFeaturesProvider features;
    QObject owner;
    return load(appId, &features, &owner).flatMap([&](const Loaded &loaded) {
        return gestureOf(loaded.gestures, appId, gestureId).flatMap([&](Gesture *gesture) -> Result<ExitStatus> {
            if (!canBePrinted(gesture))
                return Left(Failure{
                        BadFiles, QStringLiteral("the menu of gesture '%1' has more than 500 levels").arg(gestureId)});
            printMenu(gesture, json);
            return Right(Success);
        });
    });
}

Result<ExitStatus> bind(const QString &appId, const QString &gestureId, const QString &actionPath)
{
    const DefaultFeaturesProvider features;
    QObject owner;
    const auto refuse = [](const QString &reason) { return Left(Failure{WrongUse, reason}); };

    const auto paths = pathsOf(appId);
    if (paths.isLeft())
        return Left(paths.left());
    const BindLock lock(paths.right());
    if (lock.failure())
        return Left(*lock.failure());
    const auto bindings = bindingsOf(paths.right());
    if (bindings.isLeft())
        return Left(bindings.left());
    const auto defaults = gesturesOf(paths.right(), &features, Bindings(), &owner);
    if (defaults.isLeft())
        return Left(defaults.left());
    const auto gesture = gestureOf(defaults.right(), appId, gestureId);
    if (gesture.isLeft())
        return Left(gesture.left());
    if (!offers(gesture.right(), actionPath))
        return refuse(QStringLiteral("gesture '%1' does not offer the action '%2'").arg(gestureId, actionPath));
    const auto alone = gesturesOf(paths.right(), &features, {{gestureId, actionPath}}, &owner);
    if (alone.isLeft())
        return refuse(QStringLiteral("the binding would not load: ") + alone.left().message);

    Bindings wanted = bindings.right();
    wanted.insert(gestureId, actionPath);
    const auto gestures = gesturesOf(paths.right(), &features, wanted, &owner);
    if (gestures.isLeft())
        return Left(gestures.left());
    const Gesture *bound = gestureOf(gestures.right(), appId, gestureId).right();
    if (pathOf(bound->currentAction()) != actionPath)
        return refuse(QStringLiteral("gesture '%1' always does '%2': its 'currentAction' hides every binding")
                              .arg(gestureId, pathOf(bound->currentAction())));

    return writeBindings(paths.right(), gestures.right(), wanted).map([&](ExitStatus status) {
        print(gestureId + QStringLiteral(" is bound to ") + actionPath);
        return status;
    });
}

Result<ExitStatus> reset(const QString &appId)
{
    return pathsOf(appId).flatMap([](const ApplicationPaths &paths) -> Result<ExitStatus> {
        const QString file = resolved(paths.currentPath());
        if (PathResolver::newDefault().remove(paths.currentPath().toStdString()))
            print(file + QStringLiteral(" removed"));
        else if (QFileInfo(file).isSymLink() || QFileInfo::exists(file))
            return Left(Failure{BadFiles, file + QStringLiteral(": could not be removed")});
        else
            print(QStringLiteral("nothing to reset"));
        return Right(Success);
    });
}

}
