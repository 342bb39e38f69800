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

/// Modes and kind, by which a settings screen groups gestures.
struct GESTURE_API_EXPORT GestureSection
{
    Q_GADGET
    Q_PROPERTY(QStringList modes MEMBER modes CONSTANT)
    Q_PROPERTY(int kind MEMBER kind CONSTANT)

public:
    /// The key of the section: its serialised form as hexadecimal digits.
    QString stringify() const;

    /// The gestures' modes, in their order.
    QStringList modes;
    /// The gestures' kind, a value of vellix::gesture::Gesture::Kind.
    int kind;
};
Q_DECLARE_METATYPE(GestureSection)

namespace vellix {
namespace gesture {

/// A configured gesture: a kind of touch that starts in a zone or moves in a direction, in some modes of
/// the application, and the actions that it can trigger. Only the current action can change.
///
/// A new gesture becomes the parent of its actions. Its features belong to their provider. The gesture owns its action
/// tree, which has no parent object: the destructor releases it with deleteLater().
class GESTURE_API_EXPORT Gesture : public QObject
{
    Q_OBJECT
    ///@{
    /// The functions of the same names, for QML. Only the signal of `currentAction` is ever emitted.
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
    /// The kind of a touch. The application decides how long a hold lasts and how far a swipe goes.
    // Fixed underlying type: QML can pass any integer.
    enum Kind : int {
        Tap,      ///< A short touch.
        Hold,     ///< A longer touch that does not move.
        Swipe,    ///< A touch that moves.
        Drag,     ///< A touch that stays for a moment, then moves.
        Undefined ///< No kind; a file cannot name it.
    };
    Q_ENUM(Kind)

    /// The direction of a movement on the screen.
    enum Direction : int {
        ToLeft,     ///< x decreases.
        ToRight,    ///< x increases.
        ToTop,      ///< y decreases.
        ToBottom,   ///< y increases.
        NoDirection ///< No movement, or exactly along a diagonal.
    };
    Q_ENUM(Direction)

    /// The whole screen, (0, 0, 1, 1).
    static const QRectF wholeZone;

    /// `zone` is in relative screen coordinates. If `currentAction` is null, the default action is current.
    Gesture(const QString &id, const QStringList &modes, Kind kind, const QRectF &zone, Direction direction,
            const QList<Action *> &availableActions, Action *defaultAction, Action *currentAction,
            const QList<Feature *> &features, QObject *parent = nullptr);
    ~Gesture() override;

    /// The name of the gesture in bindings. If the configuration sets none, formId() forms it.
    const QString &id() const { return m_id; }
    /// The modes in which the gesture applies. An empty list means all.
    const QStringList &modes() const { return m_modes; }
    /// The kind that a touch must have.
    Kind kind() const { return m_kind; }
    /// The zone where a touch must start, in relative screen coordinates. The whole screen if the configuration sets
    /// none.
    const QRectF &zone() const { return m_zone; }
    /// The direction that a touch must have.
    Direction direction() const { return m_direction; }
    /// The actions that a user can choose from. A destroyed action is removed from the list.
    const QList<Action *> &availableActions() const { return m_availableActions; }
    /// The default of the configuration, or the user's binding if there is one. Null if there is neither, and once the
    /// action is destroyed.
    Action *defaultAction() const { return m_defaultAction; }
    /// The action that the touch triggers. Null if there is none, and once the action is destroyed.
    Action *currentAction() const { return m_currentAction; }
    /// Sets the action that the touch triggers, or null. Does not check that the action is available. The action keeps
    /// its owner. An action that is being destroyed counts as null. Nothing is written before the service's save().
    void setCurrentAction(Action *action);
    /// The available actions as a menu, created at the first call. Belongs to the gesture. Null if there are none.
    ActionProxyNode *actionTree() const;
    /// The key that all gestures with the same modes and kind share.
    QString section() const;
    /// The features that the gesture needs, read-only for QML.
    Q_INVOKABLE QQmlListProperty<vellix::gesture::Feature> features() const;
    /// The features, for C++.
    const QList<Feature *> &featureList() const { return m_features; }
    /// Whether all features are supported. Determined at the first call.
    bool supported() const;

    /// The id that an entry without one gets: modes, kind, zone name and direction, each with a capital first letter.
    static QString formId(const QStringList &modes, Kind kind, const QString &zoneName, Direction direction);
    /// The direction of a movement along its longer axis, y down. NoDirection for an exact diagonal and no movement.
    static Direction directionFromVec(double dx, double dy);
    /// The same, for a vector.
    static Direction directionFromVec(const QVector2D &v);

    /// Takes over the current action of a gesture with the same kind, zone and direction. For any other gesture, and
    /// for null, it changes nothing and returns false. The action keeps its owner.
    bool merge(Gesture *other);
    /// A copy that shares the actions and becomes their parent. It belongs to `parent`, or to the caller if there is
    /// none.
    Gesture *clone(QObject *parent = nullptr) const;

    /// Writes the gesture, its actions and its action tree, indented by `indent` steps of two spaces.
    void dump(QDebug &dbg, int indent) const;

    /// Reads one gesture entry. It can name the given actions, action groups and zones. A binding (gesture id to action
    /// path) replaces the default action of the entry. The gesture belongs to `parent`, or to the caller if there is
    /// none.
    ///
    /// An entry has "kind", "zone" or "direction" or both, and "defaultAction" (a string, or a list of alternatives)
    /// or "currentAction" or both; it may have "id", "modes" (a list), "availableActions" and "features" (a list).
    /// Fails with an error about a missing or mistyped key ("'kind' is obligatory field", "'modes' must have type
    /// `list<str>`" and others), or an error of the readers of its parts.
    static Either<Error, Gesture *> fromVariant(const QVariantMap &entry, const FeaturesProvider *featuresProvider,
                                                const QList<Action *> &actions,
                                                const QMap<QString, QList<Action *>> &actionGroups,
                                                const QMap<QString, QRectF> &zones,
                                                const QMap<QString, QString> &bindings, QObject *parent = nullptr);
    /// Reads a list of entries. Fails with "list of gestures must must contain maps", or the fromVariant() error of the
    /// first invalid entry. Gestures created before it stay children of `parent`; without a parent they leak.
    static Either<Error, QList<Gesture *>>
    listFromVariant(const QVariantList &list, const FeaturesProvider *featuresProvider, const QList<Action *> &actions,
                    const QMap<QString, QList<Action *>> &actionGroups, const QMap<QString, QRectF> &zones,
                    const QMap<QString, QString> &bindings, QObject *parent = nullptr);
    /// A QVariantMap of kind, zone (as a rectangle), direction and actions, without id, modes and features.
    QVariant toVariant() const;
    /// A QVariantList of the toVariant() of each gesture. Skips null entries.
    static QVariant listToVariant(const QList<Gesture *> &gestures);

    /// Reads the zones of a configuration. A zone can name one of `zones`, but no other zone of the section. Returns
    /// the section's zones only. Fails with the zoneFromVariant() error of the first invalid one, in the order of the
    /// names.
    static Either<Error, QMap<QString, QRectF>> zoneMapFromVariant(const QVariantMap &section,
                                                                   const QMap<QString, QRectF> &zones);
    /// Reads a zone: a name or a rectangle. `zoneName`, unless null, receives its name ("(x,y,w,h)" for a
    /// rectangle). Fails with "zone 'NAME' not defined", "zone must be either 'str' or 'map'", or an error of
    /// rectfFromVariant().
    static Either<Error, QRectF> zoneFromVariant(const QVariant &value, const QMap<QString, QRectF> &zones,
                                                 QString *zoneName = nullptr);
    /// Reads "x", "y", "w" and "h", in relative screen coordinates. Converts strings and booleans to numbers; all other
    /// values count as 0. Fails with "field 'x' must be set" and so on.
    static Either<Error, QRectF> rectfFromVariant(const QVariantMap &map);
    /// A QVariantMap of the four numbers.
    static QVariant rectfToVariant(const QRectF &r);
    /// Reads "tap", "hold", "swipe" or "drag" in any letter case. Fails with "kind can be only 'tap' or 'swipe' or
    /// 'drag'".
    static Either<Error, Kind> kindFromVariant(const QVariant &value);
    /// The name of the kind in a configuration. An invalid variant for Undefined.
    static QVariant kindToVariant(Kind kind);
    /// Reads "toLeft", "toRight", "toTop", "toBottom" or "no", case-sensitive. Fails with "direction can be only
    /// 'toLeft' or 'toRight' or 'toTop' or 'toBottom' or 'no'".
    static Either<Error, Direction> directionFromVariant(const QVariant &value);
    /// The name of the direction in a configuration.
    static QVariant directionToVariant(Direction direction);

Q_SIGNALS:
    ///@{
    /// Never emitted. QML requires a signal for every property.
    void idChanged(QString value);
    void modesChanged(QStringList value);
    void kindChanged(Kind value);
    void zoneChanged(QRectF value);
    void directionChanged(Direction value);
    void availableActionsChanged(QList<vellix::gesture::Action *> value);
    void defaultActionChanged(vellix::gesture::Action *value);
    void actionTreeChanged(vellix::gesture::ActionProxyNode *value);
    ///@}
    /// Another action was set, or the current one was destroyed; then `value` is null.
    void currentActionChanged(vellix::gesture::Action *value);
    ///@{
    /// Never emitted. QML requires a signal for every property.
    void sectionChanged(QString value);
    void featuresChanged(QQmlListProperty<vellix::gesture::Feature> value);
    void supportedChanged(bool value);
    ///@}

private:
    friend class Action;
    friend class GestureReader;
    friend class GestureService;
    friend class Offer;

    enum Taking { Later }; // takeActions() is still to be called

    Gesture(const QString &id, const QStringList &modes, Kind kind, const QRectF &zone, Direction direction,
            const QList<Action *> &availableActions, Action *defaultAction, Action *currentAction,
            const QList<Feature *> &features, QObject *parent, Taking);

    static void takeActions(const QList<Gesture *> &gestures);
    static QList<Gesture *> cloneList(const QList<Gesture *> &gestures, QObject *parent);

    void joinAll();
    void join(Action *action);
    void takeActions();
    void leaveAll();
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
    mutable QPointer<ActionProxyNode> m_actionTree;
    Offer *m_offer = nullptr; // null if no other gesture has the same list
    Action *m_currentAction;
    const quintptr m_serial;   // greater for gestures created later
    mutable QString m_section; // null until section() is called
    const QList<Feature *> m_features;
    mutable std::optional<bool> m_supported;
    mutable bool m_hasTree = false; // m_actionTree has been created, and may be null
    bool m_leaving = false;
    bool m_chosen = false; // a caller has set the current action since the load or the last save
};

}
}
