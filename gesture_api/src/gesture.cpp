#include <gesture_api/gesture.h>

#include "actionreader.h"
#include "announcement.h"
#include "dump.h"
#include "qmllistproperty.h"
#include "varianttype.h"

#include <vellix/stringutils.h>

#include <QDataStream>
#include <QIODevice>
#include <QMetaEnum>
#include <QScopeGuard>
#include <QSet>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <utility>

static const int gestureSectionType = qRegisterMetaType<GestureSection>();

QString GestureSection::stringify() const
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << static_cast<qint32>(modes.size());
    for (const QString &mode : modes)
        stream << mode;
    stream << static_cast<qint32>(kind);
    return QString::fromLatin1(bytes.toHex());
}

namespace vellix {
namespace gesture {

const QRectF Gesture::wholeZone(0, 0, 1, 1);

static Left<Error> fail(int line, const QString &message)
{
    return Left(Error({"../../../gesture_api/src/gesture", line}, message.toStdString()));
}

Gesture::Gesture(const QString &id, const QStringList &modes, Kind kind, const QRectF &zone, Direction direction,
                 const QList<Action *> &availableActions, Action *defaultAction, Action *currentAction,
                 const QList<Feature *> &features, QObject *parent)
    : Gesture(id, modes, kind, zone, direction, availableActions, defaultAction, currentAction, features, parent, Later)
{
    takeActions();
}

static quintptr nextSerial()
{
    static std::atomic<quintptr> made(0);
    return ++made;
}

Gesture::Gesture(const QString &id, const QStringList &modes, Kind kind, const QRectF &zone, Direction direction,
                 const QList<Action *> &availableActions, Action *defaultAction, Action *currentAction,
                 const QList<Feature *> &features, QObject *parent, Taking)
    : QObject(parent), m_id(id), m_modes(modes), m_kind(kind), m_zone(zone), m_direction(direction),
      m_availableActions(availableActions), m_defaultAction(defaultAction), m_serial(nextSerial()),
      m_currentAction(currentAction ? currentAction : defaultAction), m_features(features)
{
    for (Action *action : availableActions)
        join(action);
    join(m_defaultAction);
    join(m_currentAction);
}

Gesture::~Gesture()
{
    for (Action *action : qAsConst(m_availableActions))
        leave(action);
    leave(m_defaultAction);
    leave(m_currentAction);
    // An action that another gesture still uses lives on with the gesture made last.
    const QList<Action *> owned = findChildren<Action *>(QString(), Qt::FindDirectChildrenOnly);
    for (Action *action : owned) {
        if (!action->m_users.isEmpty())
            action->setParent(action->m_users.last());
    }
    if (m_actionTree)
        m_actionTree->deleteLater();
}

void Gesture::join(Action *action)
{
    if (!action)
        return;
    if (action->m_dying) {
        forget(action); // nobody listens to this gesture yet
        return;
    }
    QList<Gesture *> &users = action->m_users;
    if (users.isEmpty() || users.last()->m_serial < m_serial) { // as always while a gesture is made
        users.append(this);
        return;
    }
    const auto place = placeAmong(users);
    if (*place != this)
        users.insert(place, this);
}

// Where the gesture is among these, or belongs: they stand in the order in which they were made.
QList<Gesture *>::iterator Gesture::placeAmong(QList<Gesture *> &users) const
{
    // Mostly those go that are first or last.
    if (users.isEmpty() || users.last()->m_serial < m_serial)
        return users.end();
    if (users.first()->m_serial >= m_serial)
        return users.begin();
    return std::lower_bound(users.begin(), users.end(), m_serial,
                            [](const Gesture *user, quintptr serial) { return user->m_serial < serial; });
}

void Gesture::takeActions()
{
    const auto take = [this](Action *action) {
        if (action && action->m_users.last() == this)
            action->setParent(this);
    };
    std::for_each(m_availableActions.cbegin(), m_availableActions.cend(), take);
    take(m_defaultAction);
    take(m_currentAction);
}

void Gesture::leave(Action *action)
{
    if (!action)
        return;
    QList<Gesture *> &users = action->m_users;
    const auto place = placeAmong(users);
    if (place != users.end() && *place == this)
        users.erase(place);
}

// Of gestures that are about to be destroyed: each action is looked through once, and not once for each of them.
void Gesture::leaveTogether(const QList<Gesture *> &gestures)
{
    QSet<Action *> actions;
    for (Gesture *gesture : gestures) {
        gesture->m_leaving = true;
        for (Action *action : qAsConst(gesture->m_availableActions))
            actions.insert(action);
        gesture->m_availableActions.clear();
        actions.insert(std::exchange(gesture->m_defaultAction, nullptr));
        actions.insert(std::exchange(gesture->m_currentAction, nullptr));
    }
    actions.remove(nullptr);
    for (Action *action : qAsConst(actions)) {
        QList<Gesture *> &users = action->m_users;
        users.erase(std::remove_if(users.begin(), users.end(), [](const Gesture *user) { return user->m_leaving; }),
                    users.end());
    }
}

bool Gesture::uses(const Action *action) const
{
    return action == m_defaultAction || action == m_currentAction
            || m_availableActions.contains(const_cast<Action *>(action));
}

void Gesture::forget(Action *action)
{
    m_availableActions.removeAll(action);
    if (m_defaultAction == action)
        m_defaultAction = nullptr;
    if (m_currentAction == action) {
        m_currentAction = nullptr;
        m_chosen = false;
        announce(this, &Gesture::currentActionChanged, nullptr);
    }
}

void Gesture::setCurrentAction(Action *action)
{
    const bool dying = action && action->m_dying;
    if (dying)
        action = nullptr;
    if (action == m_currentAction)
        return;
    Action *previous = m_currentAction;
    m_currentAction = action;
    m_chosen = !dying;
    join(action);
    if (!uses(previous))
        leave(previous);
    announce(this, &Gesture::currentActionChanged, action);
}

ActionProxyNode *Gesture::actionTree() const
{
    if (!m_actionTreeMade) {
        m_actionTree = ActionProxyNode::constructTree(m_availableActions, nullptr);
        m_actionTreeMade = true;
    }
    return m_actionTree;
}

QString Gesture::section() const
{
    if (!m_sectionMade) {
        m_section = GestureSection{m_modes, m_kind}.stringify();
        m_sectionMade = true;
    }
    return m_section;
}

QQmlListProperty<Feature> Gesture::features() const
{
    return kMakeReadonlyProxyQmlListProperty(this, m_features);
}

bool Gesture::supported() const
{
    if (!m_supportedKnown) {
        m_supported = Feature::allSupported(m_features);
        m_supportedKnown = true;
    }
    return m_supported;
}

QString Gesture::formId(const QStringList &modes, Kind kind, const QString &zoneName, Direction direction)
{
    const char *kindKey = QMetaEnum::fromType<Kind>().valueToKey(kind);
    const char *directionKey = QMetaEnum::fromType<Direction>().valueToKey(direction);
    return StringUtils::capitalizeFirstOnEach(modes).join(QString()) + QString::fromLatin1(kindKey)
            + StringUtils::capitalizeFirst(zoneName) + StringUtils::capitalizeFirst(QString::fromLatin1(directionKey));
}

Gesture::Direction Gesture::directionFromVec(double dx, double dy)
{
    const double ax = std::fabs(dx);
    const double ay = std::fabs(dy);
    if (ay < ax)
        return dx > 0 ? ToRight : ToLeft;
    if (ay > ax)
        return dy > 0 ? ToBottom : ToTop;
    return NoDirection;
}

Gesture::Direction Gesture::directionFromVec(const QVector2D &v)
{
    return directionFromVec(static_cast<double>(v.x()), static_cast<double>(v.y()));
}

bool Gesture::merge(Gesture *other)
{
    // QRectF compares each component fuzzily.
    if (!other || m_kind != other->m_kind || m_zone != other->m_zone || m_direction != other->m_direction)
        return false;
    setCurrentAction(other->m_currentAction);
    return true;
}

Gesture *Gesture::clone(QObject *parent) const
{
    return new Gesture(m_id, m_modes, m_kind, m_zone, m_direction, m_availableActions, m_defaultAction, m_currentAction,
                       m_features, parent);
}

// Each action goes to the last of its users at once, not from one to the next.
QList<Gesture *> Gesture::cloneList(const QList<Gesture *> &gestures, QObject *parent)
{
    QList<Gesture *> clones;
    clones.reserve(gestures.size());
    for (const Gesture *gesture : gestures) {
        clones.append(gesture ? new Gesture(gesture->m_id, gesture->m_modes, gesture->m_kind, gesture->m_zone,
                                            gesture->m_direction, gesture->m_availableActions, gesture->m_defaultAction,
                                            gesture->m_currentAction, gesture->m_features, parent, Later)
                              : nullptr);
    }
    for (Gesture *clone : qAsConst(clones)) {
        if (clone)
            clone->takeActions();
    }
    return clones;
}

static void dumpAction(QDebug &dbg, const Action *action, int indent)
{
    if (action)
        action->dump(dbg, indent);
    else
        dbg << indentText(indent).constData() << "null\n";
}

void Gesture::dump(QDebug &dbg, int indent) const
{
    const QByteArray heading = indentText(indent + 1);
    dbg << indentText(indent).constData() << "gesture(" << m_id << "):" << m_kind << ":" << m_zone << ":" << m_direction
        << "\n";
    dbg << heading.constData() << "defaultAction:\n";
    dumpAction(dbg, m_defaultAction, indent + 2);
    dbg << heading.constData() << "currentAction:\n";
    dumpAction(dbg, m_currentAction, indent + 2);
    if (m_currentAction)
        dbg << "\n";
    dbg << heading.constData() << "availableActions:\n";
    for (const Action *action : m_availableActions)
        dumpAction(dbg, action, indent + 2);
    dbg << heading.constData() << "actionTree:\n";
    if (const ActionProxyNode *tree = actionTree())
        tree->dump(dbg, indent + 2);
    else
        dbg << indentText(indent + 2).constData() << "null\n";
}

// What the entries of one list share. Actions that are defined inline start under `inlineActions`;
// the gestures take theirs out of it.
struct Gesture::EntryContext
{
    const FeaturesProvider *featuresProvider;
    const ActionReader::Index &actions;
    const QMap<QString, QList<Action *>> &actionGroups;
    const QMap<QString, QRectF> &zones;
    const QMap<QString, QString> &bindings;
    QObject *inlineActions;
    QObject *parent;
};

Either<Error, Action *> Gesture::readDefaultAction(const QVariant &value, const EntryContext &context)
{
    if (!value.isValid())
        return Right<Action *>(nullptr);
    if (isType(value, QMetaType::QString))
        return ActionReader::action(value, context.featuresProvider, context.actions, context.inlineActions);
    return ActionReader::firstSupported(value.toList(), context.featuresProvider, context.actions,
                                        context.inlineActions);
}

static Either<Error, QList<Feature *>> readFeatures(const QVariant &value, const FeaturesProvider *featuresProvider)
{
    if (!isType(value, QMetaType::QVariantList))
        return fail(__LINE__, QStringLiteral("'features' must be list<str>."));
    return ActionReader::features(value, featuresProvider);
}

// The order of the checks is behaviour: of several faults the first here is the one that is told.
Either<Error, Gesture *> Gesture::readEntry(const QVariantMap &entry, const EntryContext &context)
{
    const auto kindValue = entry.constFind(QStringLiteral("kind"));
    const auto zoneValue = entry.constFind(QStringLiteral("zone"));
    const auto directionValue = entry.constFind(QStringLiteral("direction"));
    const auto defaultValue = entry.constFind(QStringLiteral("defaultAction"));
    const auto currentValue = entry.constFind(QStringLiteral("currentAction"));
    const auto modesValue = entry.constFind(QStringLiteral("modes"));
    const auto idValue = entry.constFind(QStringLiteral("id"));
    const auto availableValue = entry.constFind(QStringLiteral("availableActions"));
    const auto featuresValue = entry.constFind(QStringLiteral("features"));
    const auto absent = entry.constEnd();

    if (kindValue == absent)
        return fail(__LINE__, QStringLiteral("'kind' is obligatory field"));
    if (zoneValue == absent && directionValue == absent)
        return fail(__LINE__, QStringLiteral("either 'zone' or 'direction' fields must be set"));
    if (defaultValue == absent && currentValue == absent)
        return fail(__LINE__, QStringLiteral("either 'defaultAction' or 'currentAction' fields must be set"));
    if (defaultValue != absent && !isType(*defaultValue, QMetaType::QString)
        && !isType(*defaultValue, QMetaType::QStringList) && !isType(*defaultValue, QMetaType::QVariantList))
        return fail(__LINE__, QStringLiteral("'defaultAction' must have type `str` or `list<str>`"));
    if (modesValue != absent && !isType(*modesValue, QMetaType::QVariantList))
        return fail(__LINE__, QStringLiteral("'modes' must have type `list<str>`"));
    const QStringList modes =
            modesValue == absent ? QStringList() : StringUtils::sortedUnique(modesValue->toStringList());

    const auto kind = kindFromVariant(*kindValue);
    if (kind.isLeft())
        return Left(kind.left());

    QString zoneName = QStringLiteral("notSet");
    const Either<Error, QRectF> zone = zoneValue == absent
            ? Right(wholeZone)
            : zoneFromVariant(*zoneValue, context.zones, idValue == absent ? &zoneName : nullptr);
    if (zone.isLeft())
        return Left(zone.left());

    const Either<Error, Direction> direction =
            directionValue == absent ? Right(NoDirection) : directionFromVariant(*directionValue);
    if (direction.isLeft())
        return Left(direction.left());

    const QString id =
            idValue == absent ? Gesture::formId(modes, kind.right(), zoneName, direction.right()) : idValue->toString();

    const Either<Error, QList<Action *>> available = availableValue == absent
            ? Right(QList<Action *>())
            : ActionReader::list(*availableValue, context.featuresProvider, context.actions, context.actionGroups,
                                 context.inlineActions);
    if (available.isLeft())
        return Left(available.left());

    const auto bound = context.bindings.constFind(id);
    const auto defaultAction = bound == context.bindings.constEnd()
            ? readDefaultAction(defaultValue == absent ? QVariant() : *defaultValue, context)
            : ActionReader::action(*bound, context.featuresProvider, context.actions, context.inlineActions);
    if (defaultAction.isLeft())
        return Left(defaultAction.left());

    const Either<Error, Action *> currentAction = currentValue == absent
            ? Right<Action *>(nullptr)
            : ActionReader::action(*currentValue, context.featuresProvider, context.actions, context.inlineActions);
    if (currentAction.isLeft())
        return Left(currentAction.left());

    const Either<Error, QList<Feature *>> features = featuresValue == absent
            ? Right(QList<Feature *>())
            : readFeatures(*featuresValue, context.featuresProvider);
    if (features.isLeft())
        return Left(features.left());

    return Right(new Gesture(id, modes, kind.right(), zone.right(), direction.right(), available.right(),
                             defaultAction.right(), currentAction.right(), features.right(), context.parent, Later));
}

Either<Error, Gesture *> Gesture::fromVariant(const QVariantMap &entry, const FeaturesProvider *featuresProvider,
                                              const QList<Action *> &actions,
                                              const QMap<QString, QList<Action *>> &actionGroups,
                                              const QMap<QString, QRectF> &zones,
                                              const QMap<QString, QString> &bindings, QObject *parent)
{
    QObject inlineActions;
    const ActionReader::Index index = ActionReader::indexOf(actions);
    const auto gesture =
            readEntry(entry, {featuresProvider, index, actionGroups, zones, bindings, &inlineActions, parent});
    if (gesture.isRight())
        gesture.right()->takeActions();
    return gesture;
}

Either<Error, QList<Gesture *>>
Gesture::listFromVariant(const QVariantList &list, const FeaturesProvider *featuresProvider,
                         const QList<Action *> &actions, const QMap<QString, QList<Action *>> &actionGroups,
                         const QMap<QString, QRectF> &zones, const QMap<QString, QString> &bindings, QObject *parent)
{
    QObject inlineActions;
    const ActionReader::Index index = ActionReader::indexOf(actions);
    const EntryContext context{featuresProvider, index, actionGroups, zones, bindings, &inlineActions, parent};

    QList<Gesture *> gestures;
    gestures.reserve(list.size());
    // Each action goes to the last of its users at once, not from one to the next.
    const auto settle = qScopeGuard([&gestures] {
        for (Gesture *gesture : qAsConst(gestures))
            gesture->takeActions();
    });
    for (const QVariant &entry : list) {
        if (!isType(entry, QMetaType::QVariantMap))
            return fail(__LINE__, QStringLiteral("list of gestures must must contain maps"));
        const auto gesture = readEntry(entry.toMap(), context);
        if (gesture.isLeft())
            return Left(gesture.left());
        gestures.append(gesture.right());
    }
    return Right(gestures);
}

static QVariantMap withActions(QVariantMap map, const Gesture &gesture)
{
    if (gesture.defaultAction())
        map.insert(QStringLiteral("defaultAction"), gesture.defaultAction()->toVariant());
    if (gesture.currentAction())
        map.insert(QStringLiteral("currentAction"), gesture.currentAction()->toVariant());
    return map;
}

QVariant Gesture::toVariant() const
{
    return withActions({{QStringLiteral("kind"), kindToVariant(m_kind)},
                        {QStringLiteral("zone"), rectfToVariant(m_zone)},
                        {QStringLiteral("direction"), directionToVariant(m_direction)},
                        {QStringLiteral("availableActions"), Action::listToVariant(m_availableActions)}},
                       *this);
}

QVariant Gesture::listToVariant(const QList<Gesture *> &gestures)
{
    QVariantList list;
    for (const Gesture *gesture : gestures) {
        if (gesture)
            list.append(gesture->toVariant());
    }
    return list;
}

Either<Error, QMap<QString, QRectF>> Gesture::zoneMapFromVariant(const QVariantMap &section,
                                                                 const QMap<QString, QRectF> &zones)
{
    QMap<QString, QRectF> own;
    for (auto value = section.cbegin(); value != section.cend(); ++value) {
        const auto zone = zoneFromVariant(*value, zones, nullptr);
        if (zone.isLeft())
            return Left(zone.left());
        own.insert(value.key(), zone.right());
    }
    return Right(own);
}

static QString nameOf(const QRectF &r)
{
    const auto number = [](double value) { return QString::number(value, 'g', 6); };
    return QLatin1Char('(') + number(r.x()) + QLatin1Char(',') + number(r.y()) + QLatin1Char(',') + number(r.width())
            + QLatin1Char(',') + number(r.height()) + QLatin1Char(')');
}

Either<Error, QRectF> Gesture::zoneFromVariant(const QVariant &value, const QMap<QString, QRectF> &zones,
                                               QString *zoneName)
{
    const auto setName = [zoneName](const QString &name) {
        if (zoneName)
            *zoneName = name;
    };
    if (isType(value, QMetaType::QString)) {
        const QString name = value.toString();
        setName(name);
        const auto zone = zones.constFind(name);
        if (zone == zones.constEnd())
            return fail(__LINE__, QStringLiteral("zone '%1' not defined").arg(name));
        return Right(*zone);
    }
    if (isType(value, QMetaType::QVariantMap)) {
        const auto zone = rectfFromVariant(value.toMap());
        if (zone.isRight() && zoneName)
            setName(nameOf(zone.right()));
        return zone;
    }
    setName(QStringLiteral("UndefinedZone"));
    return fail(__LINE__, QStringLiteral("zone must be either 'str' or 'map'"));
}

Either<Error, QRectF> Gesture::rectfFromVariant(const QVariantMap &map)
{
    const auto x = map.constFind(QStringLiteral("x"));
    const auto y = map.constFind(QStringLiteral("y"));
    const auto w = map.constFind(QStringLiteral("w"));
    const auto h = map.constFind(QStringLiteral("h"));
    if (x == map.constEnd())
        return fail(__LINE__, QStringLiteral("field 'x' must be set"));
    if (y == map.constEnd())
        return fail(__LINE__, QStringLiteral("field 'y' must be set"));
    if (w == map.constEnd())
        return fail(__LINE__, QStringLiteral("field 'w' must be set"));
    if (h == map.constEnd())
        return fail(__LINE__, QStringLiteral("field 'h' must be set"));
    return Right(QRectF(x->toDouble(), y->toDouble(), w->toDouble(), h->toDouble()));
}

QVariant Gesture::rectfToVariant(const QRectF &r)
{
    return QVariantMap{{QStringLiteral("x"), r.x()},
                       {QStringLiteral("y"), r.y()},
                       {QStringLiteral("w"), r.width()},
                       {QStringLiteral("h"), r.height()}};
}

Either<Error, Gesture::Kind> Gesture::kindFromVariant(const QVariant &value)
{
    const QString name = value.toString().toLower();
    if (name == QLatin1String("tap"))
        return Right(Tap);
    if (name == QLatin1String("hold"))
        return Right(Hold);
    if (name == QLatin1String("swipe"))
        return Right(Swipe);
    if (name == QLatin1String("drag"))
        return Right(Drag);
    return fail(__LINE__, QStringLiteral("kind can be only 'tap' or 'swipe' or 'drag'"));
}

QVariant Gesture::kindToVariant(Kind kind)
{
    switch (kind) {
    case Tap: return QStringLiteral("tap");
    case Hold: return QStringLiteral("hold");
    case Swipe: return QStringLiteral("swipe");
    case Drag: return QStringLiteral("drag");
    case Undefined: break;
    }
    return {};
}

Either<Error, Gesture::Direction> Gesture::directionFromVariant(const QVariant &value)
{
    const QString name = value.toString();
    if (name == QLatin1String("toLeft"))
        return Right(ToLeft);
    if (name == QLatin1String("toRight"))
        return Right(ToRight);
    if (name == QLatin1String("toTop"))
        return Right(ToTop);
    if (name == QLatin1String("toBottom"))
        return Right(ToBottom);
    if (name == QLatin1String("no"))
        return Right(NoDirection);
    return fail(__LINE__,
                QStringLiteral("direction can be only 'toLeft' or 'toRight' or 'toTop' or 'toBottom' or 'no'"));
}

QVariant Gesture::directionToVariant(Direction direction)
{
    switch (direction) {
    case ToLeft: return QStringLiteral("toLeft");
    case ToRight: return QStringLiteral("toRight");
    case ToTop: return QStringLiteral("toTop");
    case ToBottom: return QStringLiteral("toBottom");
    case NoDirection: break;
    }
    return QStringLiteral("no");
}

}
}
