#include <gesture_api/action.h>

#include "actionreader.h"
#include "dump.h"
#include "qmllistproperty.h"
#include "varianttype.h"

#include <gesture_api/gesture.h>

#include <QHash>

#include <algorithm>

namespace vellix {
namespace gesture {

static Left<Error> fail(int line, const QString &message)
{
    return Left(Error({"../../../gesture_api/src/action", line}, message.toStdString()));
}

Action::Action(QObject *parent) : Action(QString(), QStringList(), QList<Feature *>(), parent) {}

Action::Action(const QString &path, const QStringList &titles, const QList<Feature *> &features, QObject *parent)
    : QObject(parent), m_path(path), m_titles(titles), m_features(features)
{
    connect(this, &Action::titlesChanged, this, [this] { Q_EMIT lastTitleChanged(lastTitle()); });
}

Action::~Action()
{
    m_dying = true;
    if (m_users.isEmpty())
        return;
    // Whoever hears of it may destroy the owner, which must not destroy this action again, and other gestures, which
    // then leave the list. Nobody enters it any more.
    setParent(nullptr);
    while (!m_users.isEmpty())
        m_users.takeLast()->forget(this);
}

QString Action::path() const
{
    return m_path;
}

QStringList Action::titles() const
{
    return m_titles;
}

QString Action::lastTitle() const
{
    return m_titles.isEmpty() ? QString() : m_titles.last();
}

QQmlListProperty<Feature> Action::features() const
{
    return kMakeReadonlyProxyQmlListProperty(this, m_features);
}

const QList<Feature *> &Action::featureList() const
{
    return m_features;
}

bool Action::supported() const
{
    if (!m_evaluated) {
        m_supported = Feature::allSupported(m_features);
        m_evaluated = true;
    }
    return m_supported;
}

static Either<Error, Action *> definition(const QVariantMap &entry, const FeaturesProvider *featuresProvider,
                                          QObject *parent)
{
    const auto title = entry.constFind(QStringLiteral("title"));
    const auto titles = entry.constFind(QStringLiteral("titles"));
    const auto features = entry.constFind(QStringLiteral("features"));
    const auto path = entry.constFind(QStringLiteral("path"));
    const auto absent = entry.constEnd();

    if (title == absent && titles == absent)
        return fail(__LINE__, QStringLiteral("one of fields 'title' or 'titles' must be set"));
    if (title != absent && titles != absent)
        return fail(__LINE__, QStringLiteral("fields 'title' or 'titles' can not be set simultaneously"));
    if (title != absent && !isType(*title, QMetaType::QString))
        return fail(__LINE__, QStringLiteral("'title' must be string. for type list<str> use 'titles'"));
    if (titles != absent && !isType(*titles, QMetaType::QVariantList))
        return fail(__LINE__, QStringLiteral("'titles' must be list<str>. for type 'str' use 'title'"));
    if (features != absent && !isType(*features, QMetaType::QVariantList))
        return fail(__LINE__, QStringLiteral("'features' must be list<str>."));

    const Either<Error, QList<Feature *>> required =
            features == absent ? Right(QList<Feature *>()) : ActionReader::features(*features, featuresProvider);
    if (required.isLeft())
        return Left(required.left());
    if (path == absent)
        return fail(__LINE__, QStringLiteral("'path' is obligatory field"));

    const QStringList labels = title != absent ? QStringList(title->toString()) : titles->toStringList();
    return Right(new Action(path->toString(), labels, required.right(), parent));
}

// `known` is any map from path to action.
template <class Map>
static Either<Error, Action *> readAction(const QVariant &v, const FeaturesProvider *featuresProvider, const Map &known,
                                          QObject *parent)
{
    if (isType(v, QMetaType::QString)) {
        const QString path = v.toString();
        Action *action = known.value(path);
        if (!action)
            return fail(__LINE__, QStringLiteral("action '%1' not defined").arg(path));
        return Right(action);
    }
    if (isType(v, QMetaType::QVariantMap))
        return definition(v.toMap(), featuresProvider, parent);
    return fail(__LINE__, QStringLiteral("'Action' must be either 'str' or 'map'"));
}

Either<Error, Action *> Action::fromVariant(const QVariant &v, const FeaturesProvider *featuresProvider,
                                            const QMap<QString, Action *> &knownActions, QObject *parent)
{
    return readAction(v, featuresProvider, knownActions, parent);
}

Either<Error, Action *> Action::fromVariant(const QVariant &v, const FeaturesProvider *featuresProvider,
                                            const QList<Action *> &actions, QObject *parent)
{
    return ActionReader::action(v, featuresProvider, ActionReader::indexOf(actions), parent);
}

Either<Error, QList<Action *>> Action::listFromVariant(const QVariant &v, const FeaturesProvider *featuresProvider,
                                                       const QList<Action *> &actions,
                                                       const QMap<QString, QList<Action *>> &actionGroups,
                                                       QObject *parent)
{
    return ActionReader::list(v, featuresProvider, ActionReader::indexOf(actions), actionGroups, parent);
}

Either<Error, QMap<QString, QList<Action *>>> Action::actionGroupsFromVariant(const QMap<QString, QVariant> &groups,
                                                                              const QList<Action *> &actions,
                                                                              const FeaturesProvider *featuresProvider,
                                                                              QObject *parent)
{
    const ActionReader::Index known = ActionReader::indexOf(actions);
    QMap<QString, QList<Action *>> table;
    for (auto group = groups.cbegin(); group != groups.cend(); ++group) {
        const auto all = ActionReader::list(*group, featuresProvider, known, {}, parent);
        if (all.isLeft())
            return Left(all.left());
        QList<Action *> &supported = table[group.key()];
        std::copy_if(all.right().cbegin(), all.right().cend(), std::back_inserter(supported),
                     [](const Action *action) { return action->supported(); });
    }
    return Right(table);
}

Either<Error, Action *> Action::firstSupportedFromVariant(const QList<QVariant> &list,
                                                          const FeaturesProvider *featuresProvider,
                                                          const QList<Action *> &actions, QObject *parent)
{
    return ActionReader::firstSupported(list, featuresProvider, ActionReader::indexOf(actions), parent);
}

QVariant Action::toVariant() const
{
    return QVariantMap{{QStringLiteral("path"), m_path}, {QStringLiteral("titles"), m_titles}};
}

QVariant Action::listToVariant(const QList<Action *> &actions)
{
    QVariantList list;
    for (const Action *action : actions) {
        if (action)
            list.append(action->toVariant());
    }
    return list;
}

void Action::dump(QDebug &dbg, int indent) const
{
    dbg << indentText(indent).constData() << "action: " << m_path << ":" << m_titles << "\n";
}

namespace ActionReader {

Index indexOf(const QList<Action *> &actions)
{
    Index index;
    index.reserve(actions.size());
    for (Action *action : actions) {
        if (action)
            index.insert(action->path(), action);
    }
    return index;
}

Either<Error, Action *> action(const QVariant &v, const FeaturesProvider *featuresProvider, const Index &known,
                               QObject *parent)
{
    return readAction(v, featuresProvider, known, parent);
}

Either<Error, QList<Action *>> list(const QVariant &v, const FeaturesProvider *featuresProvider, const Index &known,
                                    const QMap<QString, QList<Action *>> &actionGroups, QObject *parent)
{
    if (isType(v, QMetaType::QString)) {
        const QString name = v.toString();
        const auto group = actionGroups.constFind(name);
        if (group == actionGroups.constEnd())
            return fail(__LINE__, QStringLiteral("action group '%1' not defined").arg(name));
        return Right(*group);
    }
    if (isType(v, QMetaType::QVariantList)) {
        QList<Action *> actions;
        const QVariantList entries = v.toList();
        for (const QVariant &entry : entries) {
            const auto action = ActionReader::action(entry, featuresProvider, known, parent);
            if (action.isLeft())
                return Left(action.left());
            actions.append(action.right());
        }
        return Right(actions);
    }
    if (isType(v, QMetaType::QVariantMap)) {
        return action(v, featuresProvider, known, parent).map([](Action *action) { return QList<Action *>{action}; });
    }
    return fail(__LINE__, QStringLiteral("action list must be one of types: 'str', 'list', 'map'"));
}

Either<Error, Action *> firstSupported(const QList<QVariant> &list, const FeaturesProvider *featuresProvider,
                                       const Index &known, QObject *parent)
{
    for (const QVariant &alternative : list) {
        const auto action = ActionReader::action(alternative, featuresProvider, known, parent);
        if (action.isLeft() || action.right()->supported())
            return action;
    }

    QStringList alternatives;
    for (const QVariant &alternative : list)
        alternatives.append(alternative.toString());
    return fail(__LINE__,
                QStringLiteral("no one action is supported of list: [ ") + alternatives.join(QStringLiteral(", "))
                        + QStringLiteral(" ]"));
}

namespace {
class NoFeatures : public FeaturesProvider
{
public:
    QList<Feature *> allFeatures() const override { return {}; }
};
}

Either<Error, QList<Feature *>> features(const QVariant &names, const FeaturesProvider *featuresProvider)
{
    const QStringList list = names.toStringList();
    const QSet<QString> set(list.cbegin(), list.cend());
    return featuresProvider ? featuresProvider->featuresByNames(set) : NoFeatures().featuresByNames(set);
}

}

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
    // findChildNodeOrInsert walks all siblings; a menu of thousands wants to know them by segment.
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
    QVector<QPair<const ActionProxyNode *, int>> rest{{this, indent}}; // the next one last
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
