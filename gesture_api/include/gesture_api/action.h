#pragma once

#include <gesture_api/feature.h>

#include <vellix/either.h>
#include <vellix/export.h>

#include <QDebug>
#include <QList>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QQmlListProperty>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <optional>

namespace vellix {
namespace gesture {

class Gesture;
class Offer;

/// One thing that a gesture can trigger. An action never changes. Lists, groups and gestures share it by pointer.
/// It belongs to the gesture that was last created with it, or, before any gesture, to its `parent` or the caller. If
/// the owning gesture is destroyed while others use the action, the newest of them becomes the owner.
class GESTURE_API_EXPORT Action : public QObject
{
    Q_OBJECT
    ///@{
    /// The functions of the same names, for QML. The values never change.
    Q_PROPERTY(QQmlListProperty<vellix::gesture::Feature> features READ features NOTIFY featuresChanged)
    Q_PROPERTY(QString path READ path NOTIFY pathChanged)
    Q_PROPERTY(QStringList titles READ titles NOTIFY titlesChanged)
    Q_PROPERTY(QString lastTitle READ lastTitle NOTIFY lastTitleChanged)
    Q_PROPERTY(bool supported READ supported NOTIFY supportedChanged)
    ///@}

public:
    /// An action without a path, titles and features.
    explicit Action(QObject *parent = nullptr);
    /// Checks nothing. The features still belong to their provider, which must outlive the action.
    Action(const QString &path, const QStringList &titles, const QList<Feature *> &features, QObject *parent = nullptr);
    ~Action() override;

    /// The key of the action for the application and the bindings. "/" separates its segments.
    QString path() const;
    /// The labels from the outermost menu to the action's own.
    QStringList titles() const;
    /// The action's own label. A null string if there are no titles.
    QString lastTitle() const;
    /// The features that the action needs, read-only for QML. They belong to their provider.
    QQmlListProperty<Feature> features() const;
    /// The features, for C++.
    const QList<Feature *> &featureList() const;
    /// Whether all features are supported. Determined at the first call.
    bool supported() const;

    /// Reads one action. A string is the path of one of `knownActions`, whose keys are paths. An object defines a new
    /// action, which belongs to `parent`, or to the caller if there is none.
    ///
    /// A definition has "path" and either "title" (a string) or "titles" (a list of strings), and may have
    /// "features" (a list of names). Fails with "action 'PATH' not defined", "'Action' must be either 'str' or
    /// 'map'", an error about a missing or mistyped key ("'path' is obligatory field" and others), or an error of
    /// FeaturesProvider::featuresByNames(). Without a provider, every feature is unknown.
    static Either<Error, Action *> fromVariant(const QVariant &v, const FeaturesProvider *featuresProvider,
                                               const QMap<QString, Action *> &knownActions, QObject *parent = nullptr);
    /// The same with a list. If two actions have the same path, the later one is used.
    static Either<Error, Action *> fromVariant(const QVariant &v, const FeaturesProvider *featuresProvider,
                                               const QList<Action *> &actions, QObject *parent = nullptr);

    /// Reads an action list: a string names a group, a list holds actions, an object defines one action. Fails with
    /// "action group 'NAME' not defined", "action list must be one of types: 'str', 'list', 'map'", or the
    /// fromVariant() error of the first invalid action. Actions defined before it stay children of `parent`; without
    /// a parent they leak.
    static Either<Error, QList<Action *>> listFromVariant(const QVariant &v, const FeaturesProvider *featuresProvider,
                                                          const QList<Action *> &actions,
                                                          const QMap<QString, QList<Action *>> &actionGroups,
                                                          QObject *parent = nullptr);
    /// Reads named action lists and keeps their supported actions. Unsupported ones that are defined inline stay
    /// children of `parent`; without a parent they leak. Groups do not nest: a string in place of a list fails with
    /// "action group 'NAME' not defined". Otherwise fails like listFromVariant().
    static Either<Error, QMap<QString, QList<Action *>>>
    actionGroupsFromVariant(const QMap<QString, QVariant> &groups, const QList<Action *> &actions,
                            const FeaturesProvider *featuresProvider, QObject *parent = nullptr);
    /// The first supported action of a list of alternatives. Unsupported ones that are defined inline stay children of
    /// `parent`; without a parent they leak. Fails with "no one action is supported of list: [ ... ]", or the
    /// fromVariant() error of an invalid alternative before the first supported one.
    static Either<Error, Action *> firstSupportedFromVariant(const QList<QVariant> &list,
                                                             const FeaturesProvider *featuresProvider,
                                                             const QList<Action *> &actions, QObject *parent = nullptr);

    /// A QVariantMap of "path" and "titles", without the features.
    QVariant toVariant() const;
    /// A QVariantList of the toVariant() of each action. Skips null entries.
    static QVariant listToVariant(const QList<Action *> &actions);

    /// Writes path and titles in one line, indented by `indent` steps of two spaces.
    void dump(QDebug &dbg, int indent) const;

Q_SIGNALS:
    ///@{
    /// Never emitted. QML requires a signal for every property.
    void pathChanged(QString value);
    void titlesChanged(QStringList value);
    void lastTitleChanged(const QString &value);
    void featuresChanged(QQmlListProperty<vellix::gesture::Feature> value);
    void supportedChanged(bool value);
    ///@}

protected:
    /// Emits lastTitleChanged() after titlesChanged() from the first listener on.
    void connectNotify(const QMetaMethod &signal) override;

private:
    friend class Gesture;
    friend class Offer;

    struct Users;

    Gesture *lastUser() const;
    void announceLastTitle();

    const QString m_path;
    const QStringList m_titles;
    const QList<Feature *> m_features;
    mutable std::optional<bool> m_supported;
    bool m_dying = false;
    Users *m_users = nullptr; // null before the first gesture
};

/// A node of the menu tree that the paths of actions form. Actions with the same leading path segments share the nodes
/// of these segments. A node owns its children.
class GESTURE_API_EXPORT ActionProxyNode : public QObject
{
    Q_OBJECT
    ///@{
    /// The functions of the same names, for QML. `action` reads null once the action is destroyed; no signal is
    /// emitted.
    Q_PROPERTY(QQmlListProperty<vellix::gesture::ActionProxyNode> childNodes READ childNodes NOTIFY childNodesChanged)
    Q_PROPERTY(int level READ level NOTIFY levelChanged)
    Q_PROPERTY(QString pathSegment READ pathSegment NOTIFY pathSegmentChanged)
    Q_PROPERTY(QString title READ title NOTIFY titleChanged)
    Q_PROPERTY(vellix::gesture::Action *action READ action NOTIFY actionChanged)
    ///@}

public:
    /// A node without children. The action may be null, and its owner does not change. The node is not added to the
    /// childNodes() of `parent`: use findChildNodeOrInsert() for that.
    ActionProxyNode(int level, const QString &pathSegment, const QString &title, Action *action,
                    QObject *parent = nullptr);
    /// A node without an action. It becomes the parent of the given nodes. Null entries stay in childNodeList():
    /// searches skip them, and dump() writes "null".
    ActionProxyNode(int level, const QString &pathSegment, const QString &title,
                    const QList<ActionProxyNode *> &childNodes, QObject *parent = nullptr);
    /// Also destroys all nodes below, however many levels there are.
    ~ActionProxyNode() override;

    /// The tree of these actions, or null if there are none. The root belongs to `parent`, or to the caller if there is
    /// none.
    static ActionProxyNode *constructTree(const QList<Action *> &actions, QObject *parent = nullptr);

    /// The index of this node's segment in a path. 0 for the root and for its children.
    int level() const;
    /// The path segment of this node; "." for the root.
    QString pathSegment() const;
    /// The label of this node, from the action that created it. A null string for a root, and if that action has too
    /// few titles.
    QString title() const;
    /// The action that created this node. Null for a root, and once that action is destroyed.
    Action *action() const;
    /// The children in the order of their first actions, read-only for QML.
    QQmlListProperty<ActionProxyNode> childNodes() const;
    /// The children, for C++.
    const QList<ActionProxyNode *> &childNodeList() const;

    /// The first child with this segment. Creates one if there is none.
    ActionProxyNode *findChildNodeOrInsert(int level, const QString &pathSegment, const QString &title, Action *action);
    /// The first child with this segment, or null.
    ActionProxyNode *findChildNode(const QString &pathSegment) const;

    /// The segments from the root's "." to this node's.
    QStringList path() const;

    /// Whether `ancestorPath` is a proper prefix of `path`.
    static bool isAnsestorOf(const QStringList &ancestorPath, const QVector<QString> &path);
    /// Whether this node is above the node of the given action. False for null.
    Q_INVOKABLE bool isAnsestorOf(vellix::gesture::Action *other) const;

    /// Writes this node and all below, one line each, indented by `indent` steps of two spaces.
    void dump(QDebug &dbg, int indent) const;

Q_SIGNALS:
    ///@{
    /// Never emitted. QML requires a signal for every property.
    void levelChanged(int value);
    void pathSegmentChanged(QString value);
    void titleChanged(QString value);
    void actionChanged(vellix::gesture::Action *value);
    void childNodesChanged(QQmlListProperty<vellix::gesture::ActionProxyNode> value);
    ///@}

private:
    const int m_level;
    const QString m_pathSegment;
    const QString m_title;
    const QPointer<Action> m_action;
    QList<ActionProxyNode *> m_childNodes;
};

}
}
