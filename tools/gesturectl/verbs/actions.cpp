#include "verbs.h"

#include <gesturectl/output.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

using namespace vellix;
using namespace vellix::gesture;

namespace gesturectl {

namespace {
struct Request
{
    QString appId;
    QString gestureId;
    bool json = false;
};
}

static void declare(Options *options, Request *request)
{
    options->app(&request->appId).required();
    options->gesture(&request->gestureId);
    options->json(&request->json);
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

// A menu is printed level by level within the previous one, and the indentation grows with it.
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

static Result<ExitStatus> actions(const Request &request)
{
    const DefaultFeaturesProvider features;
    QObject owner;
    const auto gesture = load(request.appId, &features, &owner).flatMap([&](const Loaded &loaded) {
        return gestureOf(loaded.gestures, request.appId, request.gestureId);
    });
    if (gesture.isLeft())
        return Left(gesture.left());
    if (!canBePrinted(gesture.right()))
        return Left(Failure{
                BadFiles, QStringLiteral("the menu of gesture '%1' has more than 500 levels").arg(request.gestureId)});
    printMenu(gesture.right(), request.json);
    return Right(Success);
}

Verb actionsVerb()
{
    return verb("actions", "Show the actions of a gesture as its menu tree",
                "Example: gesturectl actions --app reader ReadingTapRightNoDirection", declare, actions);
}

}
