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

#include <optional>

/// What gestures are grouped by in a settings screen: modes and kind.
struct GESTURE_API_EXPORT GestureSection
{
    Q_GADGET
    Q_PROPERTY(QStringList modes MEMBER modes CONSTANT)
    Q_PROPERTY(int kind MEMBER kind CONSTANT)

public:
    /// The key of the section: the hexadecimal digits of its serialised form.
    QString stringify() const;

    /// The gestures' modes, in their order.
    QStringList modes;
    /// The gestures' kind, a value of vellix::gesture::Gesture::Kind.
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
    ///@{
    /// What the function of this name returns, for QML. Only the signal of `currentAction` is ever emitted.
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
    ///@}

public:
    /// What a touch is. How long a hold and how far a swipe is, the application decides that sees the touch.
    // Of a fixed type: QML passes any integer.
    enum Kind : int {
        Tap,      ///< A short touch.
        Hold,     ///< A touch that stays where it is.
        Swipe,    ///< A touch that moves.
        Drag,     ///< A touch that moves after it has stayed for a moment.
        Undefined ///< None of them; no file can name it.
    };
    Q_ENUM(Kind)

    /// Where a touch goes on the screen.
    enum Direction : int {
        ToLeft,     ///< x gets smaller.
        ToRight,    ///< x grows.
        ToTop,      ///< y gets smaller.
        ToBottom,   ///< y grows.
        NoDirection ///< Nowhere, as a tap does, or exactly along a diagonal.
    };
    Q_ENUM(Direction)

    /// The whole screen, (0, 0, 1, 1).
    static const QRectF wholeZone;

    /// `zone` is in relative screen coordinates. Without a current action the default one is current.
    Gesture(const QString &id, const QStringList &modes, Kind kind, const QRectF &zone, Direction direction,
            const QList<Action *> &availableActions, Action *defaultAction, Action *currentAction,
            const QList<Feature *> &features, QObject *parent = nullptr);
    ~Gesture() override;

    /// What bindings call the gesture; one without an id of its own has what formId() makes.
    const QString &id() const { return m_id; }
    /// The modes in which the gesture applies; none means all.
    const QStringList &modes() const { return m_modes; }
    /// What a touch must be.
    Kind kind() const { return m_kind; }
    /// Where the touch must start, in relative screen coordinates; the whole screen where the file names no zone.
    const QRectF &zone() const { return m_zone; }
    /// Where the touch must go.
    Direction direction() const { return m_direction; }
    /// The actions that a user may choose from. One that somebody deletes leaves the list.
    const QList<Action *> &availableActions() const { return m_availableActions; }
    /// What the configuration, or a binding in its place, sets; null without one, and once it is dead.
    Action *defaultAction() const { return m_defaultAction; }
    /// What the touch triggers; null for nothing, and once it is dead.
    Action *currentAction() const { return m_currentAction; }
    /// Chooses what the touch triggers, null for nothing; whether the action is among the available ones is not
    /// asked. The new action keeps its owner; one that is being destroyed counts as null. Nothing is written before the
    /// service's save().
    void setCurrentAction(Action *action);
    /// The available actions as a menu, made at the first call; null when there are none.
    ActionProxyNode *actionTree() const;
    /// The key that gestures of the same modes and kind share.
    QString section() const;
    /// What the device must have, read-only for QML.
    Q_INVOKABLE QQmlListProperty<vellix::gesture::Feature> features() const;
    /// The same features for C++.
    const QList<Feature *> &featureList() const { return m_features; }
    /// Whether all features are supported, asked at the first call.
    bool supported() const;

    /// The id of an entry that sets none: capitalised modes, kind, zone name and direction.
    static QString formId(const QStringList &modes, Kind kind, const QString &zoneName, Direction direction);
    /// The direction of a movement, y growing downwards; none for a diagonal or no movement.
    static Direction directionFromVec(double dx, double dy);
    /// The same for a vector.
    static Direction directionFromVec(const QVector2D &v);

    /// Takes over the current action of a gesture of the same kind, zone and direction; false, and
    /// nothing changed, when `other` is not such a gesture. The action keeps its owner.
    bool merge(Gesture *other);
    /// A copy that shares the actions and becomes their parent. It belongs to `parent`; without one, to the caller.
    Gesture *clone(QObject *parent = nullptr) const;

    /// Writes the gesture with its actions and its action tree, `indent` steps of two blanks to the right.
    void dump(QDebug &dbg, int indent) const;

    /// Reads one gesture entry. `actions` and `actionGroups` are what it may name, `zones` the zones
    /// in force, `bindings` (gesture id to action path) replace the entry's default action. The gesture belongs to
    /// `parent`; without one, to the caller.
    ///
    /// An entry has "kind", "zone" or "direction" or both, and "defaultAction" (a string, or a list of alternatives)
    /// or "currentAction" or both; it may have "id", "modes" (a list), "availableActions" and "features" (a list).
    /// Fails with what is missing or of a wrong type ("'kind' is obligatory field", "'modes' must have type
    /// `list<str>`" and others), and as the readers of the parts do.
    static Either<Error, Gesture *> fromVariant(const QVariantMap &entry, const FeaturesProvider *featuresProvider,
                                                const QList<Action *> &actions,
                                                const QMap<QString, QList<Action *>> &actionGroups,
                                                const QMap<QString, QRectF> &zones,
                                                const QMap<QString, QString> &bindings, QObject *parent = nullptr);
    /// Reads a list of entries. Fails with "list of gestures must must contain maps" and as fromVariant() does for
    /// the first entry that is wrong. Gestures made before it stay children of `parent`; without one they are lost.
    static Either<Error, QList<Gesture *>>
    listFromVariant(const QVariantList &list, const FeaturesProvider *featuresProvider, const QList<Action *> &actions,
                    const QMap<QString, QList<Action *>> &actionGroups, const QMap<QString, QRectF> &zones,
                    const QMap<QString, QString> &bindings, QObject *parent = nullptr);
    /// A QVariantMap of kind, zone (as a rectangle), direction and actions; id, modes and features are not written.
    QVariant toVariant() const;
    /// A QVariantList of what toVariant() gives for each gesture; null entries are left out.
    static QVariant listToVariant(const QList<Gesture *> &gestures);

    /// Reads the zones of a file, which may alias those of `zones` but not each other. The result is those of the file
    /// alone. Fails as zoneFromVariant() does for the first, in the order of the names, that is wrong.
    static Either<Error, QMap<QString, QRectF>> zoneMapFromVariant(const QVariantMap &section,
                                                                   const QMap<QString, QRectF> &zones);
    /// Reads a zone by name or as a rectangle; `zoneName`, unless null, receives its name ("(x,y,w,h)" for a
    /// rectangle). Fails with "zone 'NAME' not defined", "zone must be either 'str' or 'map'", and as
    /// rectfFromVariant() does.
    static Either<Error, QRectF> zoneFromVariant(const QVariant &value, const QMap<QString, QRectF> &zones,
                                                 QString *zoneName = nullptr);
    /// Reads "x", "y", "w" and "h"; what is no number counts as 0. Fails with "field 'x' must be set" and so on.
    static Either<Error, QRectF> rectfFromVariant(const QVariantMap &map);
    /// A QVariantMap of the four numbers.
    static QVariant rectfToVariant(const QRectF &r);
    /// Reads "tap", "hold", "swipe" or "drag" in any letter case. Fails with "kind can be only 'tap' or 'swipe' or
    /// 'drag'".
    static Either<Error, Kind> kindFromVariant(const QVariant &value);
    /// The kind as a file names it; an invalid variant for Undefined.
    static QVariant kindToVariant(Kind kind);
    /// Reads "toLeft", "toRight", "toTop", "toBottom" or "no", spelt exactly so. Fails with "direction can be only
    /// 'toLeft' or 'toRight' or 'toTop' or 'toBottom' or 'no'".
    static Either<Error, Direction> directionFromVariant(const QVariant &value);
    /// The direction as a file names it.
    static QVariant directionToVariant(Direction direction);

Q_SIGNALS:
    ///@{
    /// Never emitted: QML wants a signal of every property.
    void idChanged(QString value);
    void modesChanged(QStringList value);
    void kindChanged(Kind value);
    void zoneChanged(QRectF value);
    void directionChanged(Direction value);
    void availableActionsChanged(QList<vellix::gesture::Action *> value);
    void defaultActionChanged(vellix::gesture::Action *value);
    void actionTreeChanged(vellix::gesture::ActionProxyNode *value);
    ///@}
    /// Another action was chosen, or the current one has died, which comes with null.
    void currentActionChanged(vellix::gesture::Action *value);
    ///@{
    /// Never emitted: QML wants a signal of every property.
    void sectionChanged(QString value);
    void featuresChanged(QQmlListProperty<vellix::gesture::Feature> value);
    void supportedChanged(bool value);
    ///@}

private:
    friend class Action;
    friend class GestureReader;
    friend class GestureService;

    enum Taking { Later }; // takeActions() is still to be called

    Gesture(const QString &id, const QStringList &modes, Kind kind, const QRectF &zone, Direction direction,
            const QList<Action *> &availableActions, Action *defaultAction, Action *currentAction,
            const QList<Feature *> &features, QObject *parent, Taking);

    static QList<Gesture *> cloneList(const QList<Gesture *> &gestures, QObject *parent);

    void join(Action *action);
    void takeActions();
    void leave(Action *action);
    static void leaveTogether(const QList<Gesture *> &gestures);
    QList<Gesture *>::iterator placeAmong(QList<Gesture *> &users) const;
    bool uses(Action *action) const;
    void forget(Action *action);

    const QString m_id;
    const QStringList m_modes;
    const Kind m_kind;
    const QRectF m_zone;
    const Direction m_direction;
    QList<Action *> m_availableActions;
    Action *m_defaultAction;
    mutable std::optional<QPointer<ActionProxyNode>> m_actionTree;
    Action *m_currentAction;
    const quintptr m_serial;   // gestures made later have greater ones
    mutable QString m_section; // null until it is asked for
    const QList<Feature *> m_features;
    mutable std::optional<bool> m_supported;
    bool m_leaving = false;
    bool m_chosen = false; // the current action, by a caller, since it was loaded or saved
};

}
}
