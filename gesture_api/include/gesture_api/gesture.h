#pragma once

#include <gesture_api/action.h>
#include <gesture_api/feature.h>

#include <vellix/either.h>
#include <vellix/export.h>

#include <QDebug>
#include <QList>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QQmlListProperty>
#include <QRectF>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector2D>

/// What gestures are grouped by in a settings screen: modes and kind.
struct GESTURE_API_EXPORT GestureSection
{
    Q_GADGET
    Q_PROPERTY(QStringList modes MEMBER modes CONSTANT)
    Q_PROPERTY(int kind MEMBER kind CONSTANT)

public:
    /// The key of the section: the hexadecimal digits of its serialised form.
    QString stringify() const;

    QStringList modes;
    int kind;
};
Q_DECLARE_METATYPE(GestureSection)

namespace vellix {
namespace gesture {

/// One configured gesture: a kind of touch that starts in a zone or goes in a direction, in some
/// application modes, and the actions that it may trigger. Only the current action ever changes.
///
/// A gesture becomes the parent of its actions when it is made. Its features belong to their provider.
/// The action tree belongs to nobody and is released with deleteLater() once the gesture is gone.
class GESTURE_API_EXPORT Gesture : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString id READ id NOTIFY idChanged)
    Q_PROPERTY(QStringList modes READ modes NOTIFY modesChanged)
    Q_PROPERTY(Kind kind READ kind NOTIFY kindChanged)
    Q_PROPERTY(QRectF zone READ zone NOTIFY zoneChanged)
    Q_PROPERTY(Direction direction READ direction NOTIFY directionChanged)
    Q_PROPERTY(QList<vellix::gesture::Action *> availableActions READ availableActions NOTIFY availableActionsChanged)
    Q_PROPERTY(vellix::gesture::Action *defaultAction READ defaultAction NOTIFY defaultActionChanged)
    Q_PROPERTY(vellix::gesture::ActionProxyNode *actionTree READ actionTree NOTIFY actionTreeChanged)
    Q_PROPERTY(vellix::gesture::Action *currentAction READ currentAction WRITE setCurrentAction NOTIFY
                       currentActionChanged)
    Q_PROPERTY(QString section READ section NOTIFY sectionChanged)
    Q_PROPERTY(QQmlListProperty<vellix::gesture::Feature> features READ features NOTIFY featuresChanged)
    Q_PROPERTY(bool supported READ supported NOTIFY supportedChanged)

public:
    // Of a fixed type: QML passes any integer.
    enum Kind : int { Tap, Hold, Swipe, Drag, Undefined };
    Q_ENUM(Kind)

    enum Direction : int { ToLeft, ToRight, ToTop, ToBottom, NoDirection };
    Q_ENUM(Direction)

    /// The whole screen, (0, 0, 1, 1).
    static const QRectF wholeZone;

    /// `zone` is in relative screen coordinates. Without a current action the default one is current.
    Gesture(const QString &id, const QStringList &modes, Kind kind, const QRectF &zone, Direction direction,
            const QList<Action *> &availableActions, Action *defaultAction, Action *currentAction,
            const QList<Feature *> &features, QObject *parent = nullptr);
    ~Gesture() override;

    const QString &id() const { return m_id; }
    /// The modes in which the gesture applies; none means all.
    const QStringList &modes() const { return m_modes; }
    Kind kind() const { return m_kind; }
    /// Where the touch must start.
    const QRectF &zone() const { return m_zone; }
    Direction direction() const { return m_direction; }
    /// The actions that a user may choose from.
    const QList<Action *> &availableActions() const { return m_availableActions; }
    /// May be null.
    Action *defaultAction() const { return m_defaultAction; }
    /// May be null.
    Action *currentAction() const { return m_currentAction; }
    /// The new action keeps its owner.
    void setCurrentAction(Action *action);
    /// The available actions as a menu, made at the first call; null when there are none.
    ActionProxyNode *actionTree() const;
    /// The key that gestures of the same modes and kind share.
    QString section() const;
    /// What the device must have, read-only for QML.
    Q_INVOKABLE QQmlListProperty<vellix::gesture::Feature> features() const;
    const QList<Feature *> &featureList() const { return m_features; }
    /// Whether all features are supported, asked at the first call.
    bool supported() const;

    /// The id of an entry that sets none: capitalised modes, kind, zone name and direction.
    static QString formId(const QStringList &modes, Kind kind, const QString &zoneName, Direction direction);
    /// The direction of a movement, y growing downwards; none for a diagonal or no movement.
    static Direction directionFromVec(double dx, double dy);
    static Direction directionFromVec(const QVector2D &v);

    /// Takes over the current action of a gesture of the same kind, zone and direction; false, and
    /// nothing changed, when `other` is not such a gesture. The action keeps its owner.
    bool merge(Gesture *other);
    /// A copy that shares the actions and becomes their parent.
    Gesture *clone(QObject *parent = nullptr) const;

    void dump(QDebug &dbg, int indent) const;

    /// Reads one gesture entry. `actions` and `actionGroups` are what it may name, `zones` the zones
    /// in force, `bindings` (gesture id to action path) replace the entry's default action.
    static Either<Error, Gesture *> fromVariant(const QVariantMap &entry, const FeaturesProvider *featuresProvider,
                                                const QList<Action *> &actions,
                                                const QMap<QString, QList<Action *>> &actionGroups,
                                                const QMap<QString, QRectF> &zones,
                                                const QMap<QString, QString> &bindings, QObject *parent = nullptr);
    /// Reads a list of entries. Gestures made before the first error stay children of `parent`.
    static Either<Error, QList<Gesture *>>
    listFromVariant(const QVariantList &list, const FeaturesProvider *featuresProvider, const QList<Action *> &actions,
                    const QMap<QString, QList<Action *>> &actionGroups, const QMap<QString, QRectF> &zones,
                    const QMap<QString, QString> &bindings, QObject *parent = nullptr);
    /// Kind, zone (as a rectangle), direction and actions; id, modes and features are not written.
    QVariant toVariant() const;
    static QVariant listToVariant(const QList<Gesture *> &gestures);

    /// Reads the zones of a file, which may alias those of `zones` but not each other.
    static Either<Error, QMap<QString, QRectF>> zoneMapFromVariant(const QVariantMap &section,
                                                                   const QMap<QString, QRectF> &zones);
    /// Reads a zone by name or as a rectangle; `zoneName`, unless null, receives its name.
    static Either<Error, QRectF> zoneFromVariant(const QVariant &value, const QMap<QString, QRectF> &zones,
                                                 QString *zoneName = nullptr);
    static Either<Error, QRectF> rectfFromVariant(const QVariantMap &map);
    static QVariant rectfToVariant(const QRectF &r);
    /// Kinds are read in any letter case, directions exactly.
    static Either<Error, Kind> kindFromVariant(const QVariant &value);
    static QVariant kindToVariant(Kind kind);
    static Either<Error, Direction> directionFromVariant(const QVariant &value);
    static QVariant directionToVariant(Direction direction);

Q_SIGNALS:
    void idChanged(QString value);
    void modesChanged(QStringList value);
    void kindChanged(Kind value);
    void zoneChanged(QRectF value);
    void directionChanged(Direction value);
    void availableActionsChanged(QList<vellix::gesture::Action *> value);
    void defaultActionChanged(vellix::gesture::Action *value);
    void actionTreeChanged(vellix::gesture::ActionProxyNode *value);
    void currentActionChanged(vellix::gesture::Action *value);
    void sectionChanged(QString value);
    void featuresChanged(QQmlListProperty<vellix::gesture::Feature> value);
    void supportedChanged(bool value);

private:
    friend class Action;

    struct EntryContext;
    enum Taking { Later }; // takeActions() is still to be called

    Gesture(const QString &id, const QStringList &modes, Kind kind, const QRectF &zone, Direction direction,
            const QList<Action *> &availableActions, Action *defaultAction, Action *currentAction,
            const QList<Feature *> &features, QObject *parent, Taking);

    static Either<Error, Action *> readDefaultAction(const QVariant &value, const EntryContext &context);
    static Either<Error, Gesture *> readEntry(const QVariantMap &entry, const EntryContext &context);

    void join(Action *action);
    void takeActions();
    void leave(Action *action);
    bool uses(const Action *action) const;
    void forget(Action *action);

    const QString m_id;
    const QStringList m_modes;
    const Kind m_kind;
    const QRectF m_zone;
    const Direction m_direction;
    QList<Action *> m_availableActions;
    Action *m_defaultAction;
    mutable QPointer<ActionProxyNode> m_actionTree;
    mutable bool m_actionTreeMade = false;
    Action *m_currentAction;
    mutable QString m_section;
    mutable bool m_sectionMade = false;
    const QList<Feature *> m_features;
    mutable bool m_supported = false;
    mutable bool m_supportedKnown = false;
};

}
}
