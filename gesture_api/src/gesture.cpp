#include <gesture_api/gesture.h>

#include "announcement.h"
#include "dump.h"
#include "qmllistproperty.h"

#include <vellix/stringutils.h>

#include <QDataStream>
#include <QIODevice>
#include <QMetaEnum>

#include <atomic>
#include <cmath>

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
      m_availableActions(availableActions), m_defaultAction(defaultAction),
      m_currentAction(currentAction ? currentAction : defaultAction), m_serial(nextSerial()), m_features(features)
{
    joinAll();
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
    if (!m_hasTree)
        m_actionTree = ActionProxyNode::constructTree(m_availableActions, nullptr);
    m_hasTree = true;
    return m_actionTree;
}

QString Gesture::section() const
{
    if (m_section.isNull())
        m_section = GestureSection{m_modes, m_kind}.stringify();
    return m_section;
}

QQmlListProperty<Feature> Gesture::features() const
{
    return kMakeReadonlyProxyQmlListProperty(this, m_features);
}

bool Gesture::supported() const
{
    if (!m_supported)
        m_supported = Feature::allSupported(m_features);
    return *m_supported;
}

static void appendCapitalized(QString *text, const QString &word)
{
    const int start = text->size();
    text->append(word);
    if (!word.isEmpty())
        (*text)[start] = word.at(0).toUpper();
}

QString Gesture::formId(const QStringList &modes, Kind kind, const QString &zoneName, Direction direction)
{
    static const QMetaEnum kinds = QMetaEnum::fromType<Kind>();
    static const QMetaEnum directions = QMetaEnum::fromType<Direction>();
    QString id;
    id.reserve(64);
    for (const QString &mode : modes)
        appendCapitalized(&id, mode);
    id.append(QLatin1String(kinds.valueToKey(kind)));
    appendCapitalized(&id, zoneName);
    id.append(QLatin1String(directions.valueToKey(direction)));
    id.squeeze();
    return id;
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
    takeActions(clones);
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

}
}
