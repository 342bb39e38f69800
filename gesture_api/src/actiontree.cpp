#include <gesture_api/action.h>

#include "dump.h"
#include "qmllistproperty.h"

#include <QHash>

#include <algorithm>

namespace vellix {
namespace gesture {

ActionProxyNode::ActionProxyNode(int level, const QString &pathSegment, const QString &title, Action *action,
                                 QObject *parent)
    : QObject(parent), m_level(level), m_pathSegment(pathSegment), m_title(title), m_action(action)
{
}

ActionProxyNode::ActionProxyNode(int level, const QString &pathSegment, const QString &title,
                                 const QList<ActionProxyNode *> &childNodes, QObject *parent)
    : QObject(parent), m_level(level), m_pathSegment(pathSegment), m_title(title), m_childNodes(childNodes)
{
    for (ActionProxyNode *child : childNodes) {
        if (child)
            child->setParent(this);
    }
}

// One by one, each without children: a chain of destructors as long as a path would overflow the stack.
ActionProxyNode::~ActionProxyNode()
{
    const auto firstNode = [this] {
        for (QObject *child : children()) {
            if (auto *node = qobject_cast<ActionProxyNode *>(child))
                return node;
        }
        return static_cast<ActionProxyNode *>(nullptr);
    };
    while (ActionProxyNode *node = firstNode()) {
        const QObjectList below = node->children();
        for (QObject *child : below) {
            if (qobject_cast<ActionProxyNode *>(child))
                child->setParent(this);
        }
        delete node;
    }
}

static QVector<QString> segmentsOf(const Action *action)
{
    return action->path().split(QLatin1Char('/'), Qt::KeepEmptyParts, Qt::CaseSensitive).toVector();
}

ActionProxyNode *ActionProxyNode::constructTree(const QList<Action *> &actions, QObject *parent)
{
    if (std::all_of(actions.cbegin(), actions.cend(), [](const Action *action) { return !action; }))
        return nullptr;

    auto *root = new ActionProxyNode(0, QStringLiteral("."), QString(), static_cast<Action *>(nullptr), parent);
    // findChildNodeOrInsert walks all siblings; a menu of thousands needs an index by segment.
    QHash<QPair<ActionProxyNode *, QString>, ActionProxyNode *> known;
    for (Action *action : actions) {
        if (!action)
            continue;
        ActionProxyNode *node = root;
        const QVector<QString> segments = segmentsOf(action);
        const QStringList titles = action->titles();
        for (int i = 0; i < segments.size(); ++i) {
            ActionProxyNode *&child = known[qMakePair(node, segments.at(i))];
            if (!child) {
                child = new ActionProxyNode(i, segments.at(i), titles.value(i), action, node);
                node->m_childNodes.append(child);
            }
            node = child;
        }
    }
    return root;
}

int ActionProxyNode::level() const
{
    return m_level;
}

QString ActionProxyNode::pathSegment() const
{
    return m_pathSegment;
}

QString ActionProxyNode::title() const
{
    return m_title;
}

Action *ActionProxyNode::action() const
{
    return m_action;
}

QQmlListProperty<ActionProxyNode> ActionProxyNode::childNodes() const
{
    return kMakeReadonlyProxyQmlListProperty(this, m_childNodes);
}

const QList<ActionProxyNode *> &ActionProxyNode::childNodeList() const
{
    return m_childNodes;
}

ActionProxyNode *ActionProxyNode::findChildNodeOrInsert(int level, const QString &pathSegment, const QString &title,
                                                        Action *action)
{
    if (ActionProxyNode *known = findChildNode(pathSegment))
        return known;
    auto *child = new ActionProxyNode(level, pathSegment, title, action, this);
    m_childNodes.append(child);
    return child;
}

ActionProxyNode *ActionProxyNode::findChildNode(const QString &pathSegment) const
{
    const auto child = std::find_if(m_childNodes.cbegin(), m_childNodes.cend(), [&](const ActionProxyNode *node) {
        return node && node->m_pathSegment == pathSegment;
    });
    return child == m_childNodes.cend() ? nullptr : *child;
}

QStringList ActionProxyNode::path() const
{
    QStringList segments;
    for (const auto *node = this; node; node = qobject_cast<const ActionProxyNode *>(node->parent()))
        segments.append(node->m_pathSegment);
    std::reverse(segments.begin(), segments.end());
    return segments;
}

bool ActionProxyNode::isAnsestorOf(const QStringList &ancestorPath, const QVector<QString> &path)
{
    return ancestorPath.size() < path.size() && std::equal(ancestorPath.cbegin(), ancestorPath.cend(), path.cbegin());
}

bool ActionProxyNode::isAnsestorOf(Action *other) const
{
    if (!other)
        return false;
    QVector<QString> otherPath = segmentsOf(other);
    otherPath.prepend(QStringLiteral("."));
    return isAnsestorOf(path(), otherPath);
}

void ActionProxyNode::dump(QDebug &dbg, int indent) const
{
    QVector<QPair<const ActionProxyNode *, int>> rest{{this, indent}}; // the next node is the last one
    while (!rest.isEmpty()) {
        const auto [node, steps] = rest.takeLast();
        if (!node) {
            dbg << indentText(steps).constData() << "null\n";
            continue;
        }
        dbg << indentText(steps).constData() << "node:" << node->m_pathSegment << ":" << node->m_title << ":"
            << (node->m_action ? node->m_action->path() : QStringLiteral("null")) << node->m_level << "\n";
        const QList<ActionProxyNode *> &children = node->m_childNodes;
        for (auto child = children.crbegin(); child != children.crend(); ++child)
            rest.append({*child, *child ? steps + 2 : steps + 1});
    }
}

}
}
